#include "panel/Welcome.h"

#include "model/GroupIdentifiers.h"
#include "panel/WelcomeView.h"
#include "platform/storage/GroupContainers.h"
#include "platform/views/InterfaceFile.h"

#include <QDir>

#include <string>

namespace panel {

namespace {

platform::InterfaceFile::TopLevelObjects makeWelcome() {
    return {platform::makeView<WelcomeView>()};
}

// A path as people write it: from the home folder on, and read from the left in every language.
QString shownPath(const std::string& path) {
    QString shown = QString::fromStdString(path);
    const QString home = QDir::homePath();
    if (shown.startsWith(home + QLatin1Char('/')))
        shown.replace(0, home.size(), QLatin1Char('~'));
    return QChar(0x2066) + shown + QChar(0x2069); // the left-to-right isolate and its end
}

} // namespace

Welcome::Welcome() {
    platform::InterfaceFile::add(nibName(), makeWelcome);
}

bool Welcome::isDue() {
    return !platform::GroupContainers::containerForGroup(std::string(fullEditionGroupIdentifier));
}

void Welcome::connectOutlets(platform::View& view) {
    welcomeView_ = qobject_cast<WelcomeView*>(&view);
}

void Welcome::viewDidLoad() {
    ViewController::viewDidLoad();
    const std::string folder =
        platform::GroupContainers::containerPath(std::string(fullEditionGroupIdentifier));
    welcomeView_->setHeightChanged([this](double height) {
        setPreferredContentSize({welcomeView_->bounds().width(), height});
    });
    welcomeView_->setTexts(
        QStringLiteral("Korvel Today"),
        {qtTrId("WelcomeWhat"), qtTrId("WelcomeFolder"), shownPath(folder), qtTrId("WelcomeDocumentation")});
}

} // namespace panel
