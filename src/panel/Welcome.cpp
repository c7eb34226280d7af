#include "panel/Welcome.h"

#include "model/GroupIdentifiers.h"
#include "panel/ShownPath.h"
#include "panel/Stack.h"
#include "panel/WelcomeView.h"
#include "platform/storage/GroupContainers.h"
#include "platform/views/InterfaceFile.h"

#include <string>

namespace panel {

namespace {

platform::InterfaceFile::TopLevelObjects makeWelcome() {
    auto stack = platform::makeView<Stack>();
    stack->addSubview(*new WelcomeView(stack.get()));
    return {stack};
}

} // namespace

Welcome::Welcome() {
    platform::InterfaceFile::add(nibName(), makeWelcome);
}

bool Welcome::isDue() {
    return !platform::GroupContainers::containerForGroup(std::string(fullEditionGroupIdentifier));
}

void Welcome::connectOutlets(platform::View& view) {
    stack_ = qobject_cast<Stack*>(&view);
    texts_ = stack_->findChild<WelcomeView*>();
}

void Welcome::viewDidLoad() {
    ViewController::viewDidLoad();
    const std::string folder =
        platform::GroupContainers::containerPath(std::string(fullEditionGroupIdentifier));
    stack_->setHeightChanged([this](double height) {
        setPreferredContentSize({stack_->bounds().width(), height});
    });
    texts_->setTexts(QStringLiteral("Korvel Today"), {qtTrId("WelcomeWhat"), qtTrId("WelcomeFolder"),
                                                      leftToRight(shownPath(QString::fromStdString(folder))),
                                                      qtTrId("WelcomeDocumentation")});
    stack_->layoutViews();
}

} // namespace panel
