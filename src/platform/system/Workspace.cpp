#include "platform/system/Workspace.h"

#include "platform/system/DetachedProcess.h"

#include <string>
#include <utility>

namespace platform {

namespace {

std::function<bool(const QString&)> chosenOpener;

// gio keeps the case of the scheme when it looks up the handler. If gio is installed and fails, xdg-open is
// not tried, because it might open a browser.
bool openWithDesktop(const QString& url) {
    const std::string text = url.toStdString();
    if (const auto gio = findProgram("gio"))
        return startDetached(*gio, {"gio", "open", text});
    if (const auto xdgOpen = findProgram("xdg-open"))
        return startDetached(*xdgOpen, {"xdg-open", text});
    return false;
}

} // namespace

bool Workspace::openUrl(const QString& url) {
    return chosenOpener ? chosenOpener(url) : openWithDesktop(url);
}

void Workspace::setOpener(std::function<bool(const QString&)> opener) {
    chosenOpener = std::move(opener);
}

} // namespace platform
