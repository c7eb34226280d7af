#include "platform/system/Workspace.h"

#include "platform/system/DetachedProcess.h"

#include <utility>

namespace platform {

namespace {

std::function<bool(const QString&)> chosenOpener;

bool openWithDesktop(const QString& url) {
    const auto command = Workspace::commandFor(url);
    return command && startDetached(command->program, command->arguments);
}

} // namespace

bool Workspace::openUrl(const QString& url) {
    return chosenOpener ? chosenOpener(url) : openWithDesktop(url);
}

// gio keeps the case of the scheme when it looks up the handler. If gio is installed and fails, xdg-open is
// not tried, because it might open a browser.
std::optional<Workspace::Command> Workspace::commandFor(const QString& url) {
    const std::string text = url.toStdString();
    if (const auto gio = findProgram("gio"))
        return Command{*gio, {"gio", "open", text}};
    if (const auto xdgOpen = findProgram("xdg-open"))
        return Command{*xdgOpen, {"xdg-open", text}};
    return std::nullopt;
}

void Workspace::setOpener(std::function<bool(const QString&)> opener) {
    chosenOpener = std::move(opener);
}

} // namespace platform
