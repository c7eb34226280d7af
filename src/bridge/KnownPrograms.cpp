#include "bridge/KnownPrograms.h"

#include "bridge/icons/Icons.h"
#include "bridge/sources/GnuCash.h"
#include "bridge/sources/Gzip.h"
#include "bridge/sources/Hledger.h"
#include "bridge/sources/HledgerProgram.h"
#include "bridge/sources/HomeBank.h"
#include "bridge/sources/KMyMoney.h"

#include <utility>

namespace bridge {

namespace {

bool holds(std::string_view start, std::string_view text) {
    return start.find(text) != start.npos;
}

// Files with a program's ending are its own whatever they hold, so that its reader tells what is wrong.

bool isHomeBank(std::string_view path, std::string_view start) {
    return path.ends_with(".xhb") || holds(start, "<homebank ");
}

bool isKMyMoney(std::string_view path, std::string_view start) {
    return path.ends_with(".kmy") || holds(start, "<KMYMONEY-FILE");
}

// Its files need no ending, and are packed as a rule.
bool isGnuCash(std::string_view path, std::string_view start) {
    return path.ends_with(".gnucash") || holds(start, "<gnc-v2") || isGzip(start);
}

bool isJournal(std::string_view path, std::string_view /*start*/) {
    return path.ends_with(".journal") || path.ends_with(".hledger") || path.ends_with(".ledger") ||
           path.ends_with(".j");
}

Reading readJournal(const std::string& path, const Period& period, const Configuration& configuration) {
    const HledgerRange range = rangeOf(configuration.hledgerFirstDay, period);
    HledgerReport report = HledgerProgram().report(path, range);
    Reading reading;
    if (report.fault.empty())
        reading = readHledger(report.answer, range.first, period);
    else
        reading.fault = std::move(report.fault);
    reading.files = std::move(report.files);
    return reading;
}

std::vector<std::string> filesOfJournal(const std::string& path) {
    return HledgerProgram().files(path);
}

std::string checkJournal(const std::string& path) {
    return HledgerProgram().check(path);
}

constexpr Program programs[] = {
    {"homebank", "HomeBank", "homebank", ".xhb", "", isHomeBank, readOneFile<readHomeBank>},
    {"kmymoney", "KMyMoney", "kmymoney", ".kmy", "", isKMyMoney, readOneFile<readKMyMoney>},
    {"gnucash", "GnuCash", "gnucash", ".gnucash", ".LCK", isGnuCash, readOneFile<readGnuCash>},
    {"hledger", "hledger", "", ".journal .hledger .ledger .j", "", isJournal, readJournal, filesOfJournal,
     checkJournal},
};

} // namespace

Programs knownPrograms() {
    return programs;
}

Icons knownIcons() {
    return {iconFor, iconFile};
}

} // namespace bridge
