#include "ctl/CheckCommand.h"

#include "ctl/Confinement.h"
#include "ctl/Host.h"
#include "ctl/Json.h"
#include "ctl/Terminal.h"
#include "ctl/check/CheckedContainer.h"
#include "ctl/check/FeedCheck.h"
#include "ctl/check/FilesCheck.h"
#include "ctl/check/Finding.h"
#include "ctl/check/IconsCheck.h"
#include "ctl/check/LogCheck.h"
#include "ctl/check/MonthEndCheck.h"
#include "ctl/check/SettingsCheck.h"
#include "ctl/check/UrlHandlerCheck.h"
#include "platform/storage/Files.h"

#include <QString>

#include <ostream>
#include <string>
#include <string_view>

namespace ctl {

namespace {

struct SeverityText {
    const char* name;
    const char* heading;
};

SeverityText textOf(Severity severity) {
    switch (severity) {
    case Severity::Ends:
        return {"ends", "These end the panel:"};
    case Severity::Loses:
        return {"loses", "These lose an action:"};
    case Severity::Degrades:
        return {"degrades", "These spoil something:"};
    case Severity::Note:
        break;
    }
    return {"note", "To be noted:"};
}

Findings findingsOf(const CheckedContainer& container, const UrlHandlers& handlers) {
    Findings findings;
    if (!container.exists) {
        findings.add(Fault::ContainerMissing, {container.path},
                     platform::fileExists(container.path) ? "what is there is no folder"
                                                          : "there is no container");
    } else {
        findings.setAboutHiddenList(container.hidesList);
        checkIcons(container, checkFeed(container, findings), findings);
        checkDays(container, findings);
        findings.setAboutHiddenList(false);
        checkSettings(container, findings);
        checkLog(container, findings);
        checkFiles(container, findings);
    }
    checkUrlHandler(handlers, findings);
    return findings;
}

// Not every reader of JSON takes a lone surrogate, and the name of a file may be no UTF-8 at all: U+FFFD
// stands for what is no character.
std::string quoted(std::string_view text) {
    return jsonString(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

void printJson(const Findings& findings, std::ostream& out) {
    out << '[';
    const char* separator = "\n  ";
    for (const Severity severity : severities)
        for (const Finding& finding : findings.all()) {
            if (finding.severity != severity)
                continue;
            const FaultKind& kind = kindOf(finding.fault);
            const auto& [file, record, key] = finding.place;
            out << separator << "{\"severity\": \"" << textOf(severity).name << "\", \"finding\": \""
                << kind.name << "\", \"file\": " << (file.empty() ? "null" : quoted(file))
                << ", \"record\": " << (record ? std::to_string(*record) : "null")
                << ", \"key\": " << (key.empty() ? "null" : quoted(key))
                << ", \"wrong\": " << quoted(finding.wrong)
                << ", \"consequence\": " << quoted(finding.consequence)
                << ", \"remedy\": " << quoted(kind.remedy) << ", \"more\": " << findings.more(finding.fault)
                << '}';
            separator = ",\n  ";
        }
    out << (findings.all().empty() ? "]\n" : "\n]\n");
}

// "FILE, record 3, "amount": ".
std::string textOf(const Place& place) {
    std::string text = place.file;
    if (place.record)
        text += ", record " + std::to_string(*place.record);
    if (!place.key.empty())
        text += ", \"" + place.key + '"';
    return text.empty() ? text : text + ": ";
}

// The consequence and the remedy of a kind are told once, after the last of its findings.
void printText(const Findings& findings, std::ostream& out) {
    for (const Severity severity : severities) {
        if (findings.count(severity) == 0)
            continue;
        out << textOf(severity).heading << '\n';
        for (const FaultKind& kind : faultKinds()) {
            const Finding* last = nullptr;
            for (const Finding& finding : findings.all())
                if (finding.fault == kind.fault && finding.severity == severity) {
                    out << "  " << terminalText(textOf(finding.place) + finding.wrong) << '\n';
                    last = &finding;
                }
            if (!last)
                continue;
            if (const std::size_t more = findings.more(kind.fault))
                out << "  and " << more << " more of this kind\n";
            out << "    panel: " << terminalText(last->consequence) << "\n    cure: " << kind.remedy << '\n';
        }
        out << '\n';
    }
    if (findings.count(Severity::Ends) + findings.count(Severity::Loses) != 0)
        return;
    out << (findings.count(Severity::Degrades) == 0 ? "The container is sound.\n"
                                                    : "Nothing ends the panel, and no action is lost.\n");
}

} // namespace

int check(const Options& options, Streams& streams) {
    // The lists of the desktop are the user's own, and may be links to anywhere.
    const UrlHandlers handlers = UrlHandlers::lookUp();
    if (!confine(streams, {{containerPath()}, {}}))
        return Failed;
    const CheckedContainer container = CheckedContainer::lookUp();
    const Findings findings = findingsOf(container, handlers);
    if (options.json)
        printJson(findings, streams.out);
    else
        printText(findings, streams.out);
    const std::size_t ending = findings.count(Severity::Ends);
    const std::size_t losing = findings.count(Severity::Loses);
    if (ending + losing == 0)
        return Done;
    return failed(streams, container.path,
                  "findings that end the panel: " + std::to_string(ending) +
                      ", that lose an action: " + std::to_string(losing));
}

} // namespace ctl
