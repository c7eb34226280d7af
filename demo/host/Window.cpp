#include "host/Window.h"

#include "host/HostWindow.h"
#include "platform/storage/GroupContainers.h"

#include <QApplication>
#include <QLocale>

#include <csignal>
#include <cstdio>

namespace host {

int runWindow(const std::vector<std::string>& words, char* name) {
    std::signal(SIGPIPE, SIG_IGN); // whoever read the lines may go away
    platform::GroupContainers::setFolder(words[1]);
    if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES"))
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    int count = 1; // the toolkit's own options are not this program's
    QApplication application(count, &name);
    QApplication::setQuitOnLastWindowClosed(false);
    const QStringList languages = QLocale::system().uiLanguages();
    if (!languages.isEmpty())
        QApplication::setLayoutDirection(QLocale(languages.front()).textDirection());
    HostWindow window(words[0], [](const QString& line) {
        std::fputs(qUtf8Printable(line), stdout);
        std::fflush(stdout);
    });
    window.show();
    return QApplication::exec();
}

} // namespace host
