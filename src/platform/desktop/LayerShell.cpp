#include "platform/desktop/LayerShell.h"

#include "platform/desktop/LayerShellModule.h"
#include "platform/desktop/WindowSystem.h"

#include <QByteArray>
#include <QLibrary>
#include <QString>

#include <filesystem>

namespace platform {

namespace {

struct Module {
    decltype(&korvelIsLayerShellAnnounced) isAnnounced = nullptr;
    decltype(&korvelDockInLayerShell) dock = nullptr;
};

// Without functions where it is not there, or does not go with the toolkit that is.
const Module& module() {
    static const Module loaded = [] {
        QLibrary file(QString::fromStdString(layerShellFolder() + "/layer-shell.so"));
        return Module{
            reinterpret_cast<decltype(Module::isAnnounced)>(file.resolve("korvelIsLayerShellAnnounced")),
            reinterpret_cast<decltype(Module::dock)>(file.resolve("korvelDockInLayerShell"))};
    }();
    return loaded;
}

// sway (seen with 1.10) takes the keyboard from a docked window as soon as it has given it, and with each
// change of the window's height, unless the window keeps it from all others. Escape would not hide the panel
// there.
bool isWanted() {
    const QByteArray choice = qgetenv("KORVEL_DOCKED");
    if (choice == "yes" || choice == "no")
        return choice == "yes";
    return !qEnvironmentVariableIsSet("SWAYSOCK");
}

} // namespace

std::string layerShellFolder() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (program.parent_path() / KORVEL_MODULES).lexically_normal().string();
}

bool hasLayerShell() {
    static const bool has =
        isOnWayland() && isWanted() && module().isAnnounced && module().dock && module().isAnnounced();
    return has;
}

void dockInLayerShell(QWindow& window, int margin) {
    module().dock(&window, margin);
}

} // namespace platform
