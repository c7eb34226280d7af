#include "panel/Welcome.h"

#include "model/GroupIdentifiers.h"
#include "panel/ShownPath.h"
#include "panel/Stack.h"
#include "panel/WelcomeView.h"
#include "platform/storage/GroupContainers.h"
#include "platform/views/InterfaceFile.h"

#include <algorithm>
#include <string>

namespace panel {

namespace {

constexpr int spaceAtRows = 2; // between a text and the rows, which have space of their own

platform::InterfaceFile::TopLevelObjects makeWelcome() {
    auto stack = platform::makeView<Stack>();
    stack->addSubview(*new WelcomeView(stack.get()));
    auto* closing = new WelcomeView(stack.get());
    closing->setContentsMargins(0, spaceAtRows, 0, WelcomeView::margin);
    stack->addSubview(*closing);
    return {stack};
}

QString listFolder() {
    const std::string group(fullEditionGroupIdentifier);
    return leftToRight(shownPath(QString::fromStdString(platform::GroupContainers::containerPath(group))));
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
    const auto texts = stack_->findChildren<WelcomeView*>();
    texts_ = texts.front();
    closingText_ = texts.back();
}

void Welcome::viewDidLoad() {
    ViewController::viewDidLoad();
    stack_->setHeightChanged([this](double height) {
        setPreferredContentSize({stack_->bounds().width(), height});
    });
    refresh();
}

void Welcome::refresh() {
    QStringList paragraphs{qtTrId("WelcomeWhat")};
    if (rows_.empty())
        paragraphs << qtTrId("WelcomeFolder") << listFolder() << qtTrId("WelcomeDocumentation");
    else
        paragraphs << qtTrId("WelcomeFound");
    texts_->setTexts(QStringLiteral("Korvel Today"), paragraphs);
    texts_->setContentsMargins(0, WelcomeView::margin, 0, rows_.empty() ? WelcomeView::margin : spaceAtRows);
    closingText_->setTexts({}, {qtTrId("WelcomeOnlyRead")});
    closingText_->setHidden(rows_.empty());
    stack_->layoutViews();
}

void Welcome::beginOffers() {
    const std::set<int> offered = std::exchange(offered_, {});
    std::erase_if(rows_, [&](const auto& row) { return !offered.contains(row->source().number); });
    refresh();
}

void Welcome::offer(const Source& source) {
    offered_.insert(source.number);
    if (SourceRow* row = rowOf(source.number))
        row->setSource(source);
    else if (rows_.size() < mostSources)
        addRow(source);
    refresh();
}

void Welcome::addRow(const Source& source) {
    const auto& row = rows_.emplace_back(platform::makeView<SourceRow>(source));
    row->setChosen([this, number = source.number] {
        refresh(); // what was wrong before is gone
        if (const auto chosen = chosen_)
            chosen(number);
    });
    stack_->addSubview(*row);
    stack_->addSubview(*closingText_); // in front of the rows: below them
}

void Welcome::setFault(int number, const QString& reason) {
    SourceRow* row = rowOf(number);
    if (!row)
        return;
    row->setFault(reason);
    refresh();
}

SourceRow* Welcome::rowOf(int number) const {
    const auto row =
        std::ranges::find_if(rows_, [&](const auto& known) { return known->source().number == number; });
    return row == rows_.end() ? nullptr : row->get();
}

} // namespace panel
