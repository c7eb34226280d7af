#include "bridge/KnownPrograms.h"

#include "bridge/icons/Icons.h"
#include "bridge/sources/GnuCash.h"
#include "bridge/sources/Hledger.h"
#include "bridge/sources/HledgerProgram.h"
#include "bridge/sources/HomeBank.h"
#include "bridge/sources/KMyMoney.h"

#include <utility>

namespace bridge {

namespace {

// A packed file, and one of a kind that the reader refuses with a reason, is known by its name alone.
bool isHomeBank(std::string_view path, std::string_view start) {
    return path.ends_with(".xhb") || start.find("<homebank ") != start.npos;
}

bool isKMyMoney(std::string_view path, std::string_view start) {
    return path.ends_with(".kmy") || start.find("<!DOCTYPE KMYMONEY-FILE>") != start.npos;
}

bool isGnuCash(std::string_view path, std::string_view start) {
    return path.ends_with(".gnucash") || start.find("<gnc-v2") != start.npos;
}

constexpr std::string_view journalEndings = ".journal .hledger .ledger .j";

// A journal is any text.
bool isJournal(std::string_view path, std::string_view /*start*/) {
    return path.ends_with(".journal") || path.ends_with(".hledger") || path.ends_with(".ledger") ||
           path.ends_with(".j");
}

Reading readJournal(const std::string& path, const Period& period, const Configuration& configuration) {
    const HledgerRange range = rangeOf(configuration.hledgerFirstDay, period);
    HledgerReport report = HledgerProgram().report(path, range);
    if (report.fault.empty())
        return readHledger(report.answer, range.first, period);
    Reading reading;
    reading.fault = std::move(report.fault);
    return reading;
}

constexpr Program programs[] = {
    {"homebank", "HomeBank", "homebank", ".xhb", "", isHomeBank, readOneFile<readHomeBank>},
    {"kmymoney", "KMyMoney", "kmymoney", ".kmy", "", isKMyMoney, readOneFile<readKMyMoney>},
    {"gnucash", "GnuCash", "gnucash", ".gnucash", ".LCK", isGnuCash, readOneFile<readGnuCash>},
    {"hledger", "hledger", "", journalEndings, "", isJournal, readJournal},
};

} // namespace

Programs knownPrograms() {
    return programs;
}

Icons knownIcons() {
    return {iconFor, iconFile};
}

} // namespace bridge
