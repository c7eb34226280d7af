#include "controller/ControllerTest.h"

#include "controller/WidgetInterfaceFiles.h"
#include "exchange/TodayWidgetLogic.h"
#include "platform/plist/Writer.h"
#include "platform/system/Workspace.h"
#include "support/Application.h"

#include <QBuffer>
#include <QImage>

namespace controller {

namespace {

constexpr double viewWidth = 320;

} // namespace

ControllerTest::ControllerTest() {
    registerWidgetInterfaceFiles();
    platform::Workspace::setOpener([this](const QString& url) {
        opened.push_back(url.toStdString());
        return true;
    });
    giveIcon("house");
}

// Pending events are processed first, because destroying views is slow while thousands of events are pending.
ControllerTest::~ControllerTest() {
    end();
    platform::Workspace::setOpener({});
}

void ControllerTest::giveFeed(const std::vector<Occurrence>& occurrences) const {
    std::vector<plist::Value> records;
    for (const Occurrence& occurrence : occurrences) {
        plist::Dictionary record = exchange::recordOf("plan of " + occurrence.name, occurrence.date);
        record.set("name", plist::Value(occurrence.name));
        record.set("amount", plist::Value(occurrence.amount));
        record.set("single", plist::Value(occurrence.isSinglePlan));
        records.emplace_back(std::move(record));
    }
    writeFeed(records);
}

void ControllerTest::giveFeedOf(int count, bool isSinglePlan) const {
    std::vector<Occurrence> occurrences;
    for (int i = 0; i < count; ++i)
        occurrences.push_back(
            {std::string(1, static_cast<char>('A' + i)), tenthOfMarch + 60.0 * i, isSinglePlan});
    giveFeed(occurrences);
}

void ControllerTest::giveFatalFeed() const {
    write("notifications.xml", exchange::arrayFile("<string>no record</string>"));
}

void ControllerTest::giveSettings(std::int64_t shownCount, std::int64_t days) const {
    setSettings({{"show_transactions_count", plist::Value(shownCount)},
                 {"notification_days_count", plist::Value(days)}});
}

void ControllerTest::giveIcon(const std::string& name) const {
    QImage icon(4, 4, QImage::Format_ARGB32);
    icon.fill(Qt::black);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly) && icon.save(&buffer, "PNG"));
    write("-/icons/" + name + ".png", bytes.toStdString());
}

ControllerTest::Files ControllerTest::files() const {
    return {feed(), log()};
}

ControllerTest::Files ControllerTest::filesAfter(const TodayTransaction& transaction, Action action) const {
    const Files before = files();
    TodayWidgetLogic::performTransactionAction(transaction, action, nullptr);
    const Files after = files();
    EXPECT_NE(after, before) << "the action leaves no trace to compare with";
    write("notifications.xml", before.feed);
    remove("-/actions.xml");
    return after;
}

void ControllerTest::load() {
    end();
    controller = std::make_shared<TodayViewController>();
    controller->setExtensionContext(std::make_shared<platform::ExtensionContext>());
    controller->setPreferredContentSizeChanged([this] {
        if (followsPreferredHeight && controller)
            controller->view().setFrame(QRectF(20, 20, viewWidth, height()));
    });
    (void)controller->view();
}

void ControllerTest::load(Count count) {
    load();
    controller->trCount = count;
    controller->reloadData();
}

void ControllerTest::end() {
    support::settle();
    if (controller)
        controller->releaseViews();
    controller = nullptr;
    support::flushDeferredDeletes();
}

std::shared_ptr<TodayAddTableCellView> ControllerTest::addRow() const {
    return std::dynamic_pointer_cast<TodayAddTableCellView>(table().viewAtRow(table().numberOfRows() - 1));
}

std::vector<std::string> ControllerTest::names() const {
    std::vector<std::string> result;
    for (const TodayTransactionPtr& transaction : controller->transactionsArray)
        result.push_back(transaction->name.toStdString());
    return result;
}

std::vector<std::string> ControllerTest::shown() const {
    std::vector<std::string> result;
    for (std::int64_t i = 0; i < table().numberOfRows(); ++i) {
        const auto view = table().viewAtRow(i);
        if (const auto cell = std::dynamic_pointer_cast<TodayTableCellView>(view))
            result.push_back(cell->item->name.toStdString());
        else if (const auto last = std::dynamic_pointer_cast<TodayAddTableCellView>(view))
            result.push_back("[" + last->titleLabel->stringValue().toStdString() + "]");
        else
            result.emplace_back(view ? "a view of another class" : "nothing");
    }
    return result;
}

void ControllerTest::act(std::size_t number, Action action) {
    TodayTableCellView& cell = row(number);
    if (!cell.isExpanded())
        cell.cellClicked();
    cell.buttonsPanelUserClickAction(action);
}

} // namespace controller
