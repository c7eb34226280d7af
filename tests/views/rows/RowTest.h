#pragma once

#include "model/TodayTransaction.h"
#include "platform/system/Clock.h"
#include "platform/system/Region.h"
#include "platform/views/View.h"
#include "support/Containers.h"
#include "support/Environment.h"
#include "support/ManualMainQueue.h"
#include "support/Moments.h"
#include "views/rows/TodayAddTableCellView.h"
#include "views/rows/TodayTableCellView.h"

#include <QFont>
#include <QString>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace rows {

using namespace std::chrono_literals;

// Writes down what a row tells.
class RecordingDelegate final : public TodayTableViewCellDelegate {
public:
    void todayTableViewCellWillExpanded(TodayTableCellView& cell) override;
    void todayTableViewCellClickedAction(TodayTransactionAction action) override;

    std::vector<TodayTableCellView*> opened;
    std::vector<TodayTransactionAction> actions;
    std::function<void()> during; // runs inside each call
};

// A stage for rows on 10 March 2026 at 12:00 UTC, with a container that holds the glyph "groceries" and the
// picture pictureName, and with time that stands until the queue is moved.
class RowTest : public testing::Test {
protected:
    RowTest();

    static constexpr double now = 1773144000;
    static const QString pictureName;

    // A row out of its interface file, on the stage but not at its corner.
    [[nodiscard]] std::shared_ptr<TodayTableCellView> makeRow(double width = 320);
    // The same, configured with item() and open.
    [[nodiscard]] std::shared_ptr<TodayTableCellView> makeOpenRow(double width = 320);
    [[nodiscard]] std::shared_ptr<TodayAddTableCellView> makeAddRow(double width = 320);

    void showStage();
    void putOnStage(platform::View& row, double width);
    // Moves time on to the end of a slide that starts now.
    void finishSlide() { queue.advance(200ms); }

    void writeIcon(const QString& name, int side) const;

    // An expense of 12.50 called "Rent" with a glyph, due now.
    [[nodiscard]] static TodayTransaction::Values rent();
    [[nodiscard]] static TodayTransactionPtr item(const TodayTransaction::Values& values = rent());
    [[nodiscard]] static TodayTransactionPtr overdueItem();

    platform::View stage; // ends last, after the rows on it
    support::Containers containers;
    // The processes of death tests, which end without cleaning up, make their folders in this test's.
    support::EnvironmentVariable temporaryFolder{"TMPDIR", containers.folder().path()};
    support::ManualMainQueue queue;
    platform::ManualClock clock{now};
    platform::RegionOverride region{{"en_US", "UTC"}};
};

// A row of a table of cases, called by its name in messages.
struct Named {
    const char* name;

    friend std::ostream& operator<<(std::ostream& stream, const Named& named) { return stream << named.name; }
};

template <class Case>
[[nodiscard]] std::string nameOfCase(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

// The size of a font in points (device-independent pixels).
[[nodiscard]] double sizeOf(const QFont& font);

// A text whose width in a font is as near to a number of points as a few letters make it.
[[nodiscard]] QString textAsWideAs(double width, const QFont& font);

// Where a view stands on another that holds it, at whatever depth.
[[nodiscard]] QRect placeOn(const platform::View& holder, const platform::View& view);

// The four buttons of a row's panel, by what they report: Paid, Later, Info, Delete.
[[nodiscard]] std::vector<platform::View*> buttonsOf(const TodayTableCellView& row);

} // namespace rows
