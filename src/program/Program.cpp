#include "program/Program.h"

#include "panel/PanelProcess.h"
#include "panel/Snapshot.h"
#include "platform/storage/GroupContainers.h"
#include "platform/system/DisplayConnection.h"
#include "program/Options.h"
#include "resources/Language.h"

#include <QApplication>

#include <cstdio>

namespace program {

int run(int argc, char** argv) {
    const auto parsed = parseOptions({argv + 1, argv + argc});
    if (const auto* fault = std::get_if<UsageError>(&parsed)) {
        std::fprintf(stderr, "korvel-today: %s\n", qUtf8Printable(fault->message));
        return 2;
    }
    const auto& options = std::get<Options>(parsed);
    if (options.showsHelp || options.showsVersion) {
        std::fputs(qUtf8Printable(options.showsHelp ? helpText() : versionText()), stdout);
        return 0;
    }
    if (!options.containers.empty())
        platform::GroupContainers::setFolder(options.containers);
    if (options.snapshot)
        panel::prepareSnapshot(*options.snapshot);
    platform::DisplayConnection::watch();
    // Qt would take options of its own from the arguments, which this program does not have.
    int count = 1;
    QApplication application(count, argv);
    platform::DisplayConnection::setReached();
    resources::installLanguage();
    if (options.snapshot)
        return panel::writeSnapshot(*options.snapshot) ? 0 : 1;
    return panel::showPanel();
}

} // namespace program
