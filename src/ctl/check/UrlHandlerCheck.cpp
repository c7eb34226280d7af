#include "ctl/check/UrlHandlerCheck.h"

#include "platform/system/DetachedProcess.h"

#include <string>
#include <unistd.h>

namespace ctl {

namespace {

// gio looks a scheme up in lower case, xdg-open as it is spelled in the URL.
constexpr const char* typeOfGio = "x-scheme-handler/korvelwidget";
constexpr const char* typeOfXdgOpen = "x-scheme-handler/korvelWidget";

bool canBeStarted(const std::string& program) {
    if (program.find('/') == std::string::npos)
        return platform::findProgram(program).has_value();
    return access(program.c_str(), X_OK) == 0;
}

void checkEntry(const DesktopEntry& entry, Findings& findings) {
    if (entry.isStartedByBus)
        return;
    const std::string program = programOfExec(entry.exec);
    if (program.empty())
        findings.add(Fault::HandlerUnusable, {entry.path, std::nullopt, "Exec"},
                     "the line is missing or empty");
    else if (!canBeStarted(program))
        findings.add(Fault::HandlerUnusable, {entry.path, std::nullopt, "Exec"},
                     "the program " + program + " cannot be found or executed");
    else if (!takesUrl(entry.exec))
        findings.add(Fault::HandlerWithoutUrl, {entry.path, std::nullopt, "Exec"},
                     "the line has neither %u nor %U");
}

std::string lackOf(const char* type, const char* opener, const HandlerSearch& search) {
    std::string wrong =
        std::string("no installed program handles ") + type + ", which " + opener + " looks up";
    if (!search.notInstalled.empty())
        wrong += "; " + search.notInstalled.front() + ", which is associated with it, is not installed";
    return wrong;
}

} // namespace

UrlHandlers UrlHandlers::lookUp() {
    return {findHandler(typeOfGio), findHandler(typeOfXdgOpen)};
}

void checkUrlHandler(const UrlHandlers& handlers, Findings& findings) {
    const bool hasGio = platform::findProgram("gio").has_value();
    const bool hasXdgOpen = platform::findProgram("xdg-open").has_value();
    if (!hasGio && !hasXdgOpen)
        findings.add(Fault::NoOpener, {}, "neither gio nor xdg-open is on the PATH");
    const bool usesXdgOpen = !hasGio && hasXdgOpen;
    const char* const type = usesXdgOpen ? typeOfXdgOpen : typeOfGio;
    const HandlerSearch& search = usesXdgOpen ? handlers.ofXdgOpen : handlers.ofGio;
    if (!search.handler) {
        findings.add(Fault::NoHandler, {}, lackOf(type, usesXdgOpen ? "xdg-open" : "gio", search));
        return;
    }
    checkEntry(*search.handler, findings);
    if (!(usesXdgOpen ? handlers.ofGio : handlers.ofXdgOpen).handler)
        findings.add(Fault::OtherSpellingMissing, {},
                     std::string("no installed program handles ") +
                         (usesXdgOpen ? typeOfGio : typeOfXdgOpen));
}

} // namespace ctl
