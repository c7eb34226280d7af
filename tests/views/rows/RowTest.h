#pragma once

#include "model/TodayTransaction.h"
#include "platform/system/Region.h"
#include "platform/views/View.h"
#include "support/Containers.h"
#include "support/Environment.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/Moments.h"
#include "support/RegionOverride.h"
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

// Records the calls of a row.
class RecordingDelegate final : public TodayTableViewCellDelegate {
public:
    void todayTableViewCellWillExpanded(TodayTableCellView& cell) override;
    void todayTableViewCellClickedAction(TodayTransactionAction action) override;

    std::vector<TodayTableCellView*> opened;
    std::vector<TodayTransactionAction> actions;
    std::function<void()> during; // runs inside each call
};

// A superview for rows on 10 March 2026 at 12:00 UTC, a container with the glyph "groceries" and the picture
// pictureName, and a queue whose time the test advances.
class RowTest : public testing::Test {
protected:
    RowTest();

    static constexpr double now = 1773144000;
    static const QString pictureName;

    // A row from its interface file, in the superview but not at its origin.
    [[nodiscard]] std::shared_ptr<TodayTableCellView> makeRow(double width = 320);
    // An open row that was configured with item().
    [[nodiscard]] std::shared_ptr<TodayTableCellView> makeOpenRow(double width = 320);
    [[nodiscard]] std::shared_ptr<TodayAddTableCellView> makeAddRow(double width = 320);

    void showStage();
    void putOnStage(platform::View& row, double width);
    // Advances the time to the end of a slide that starts now.
    void finishSlide() { queue.advance(200ms); }

    void writeIcon(const QString& name, int side) const;

    // An expense of 12.50 with the name "Rent" and a glyph, due now.
    [[nodiscard]] static TodayTransaction::Values rent();
    [[nodiscard]] static TodayTransactionPtr item(const TodayTransaction::Values& values = rent());
    [[nodiscard]] static TodayTransactionPtr overdueItem();

    platform::View stage; // declared first, so that it outlives its rows
    support::Containers containers;
    // The processes of death tests cannot remove their folders, so they make them in the folder of this test.
    support::EnvironmentVariable temporaryFolder{"TMPDIR", containers.folder().path()};
    support::ManualMainQueue queue;
    support::ManualClock clock{now};
    support::RegionOverride region{{"en_US", "UTC"}};
};

// A case of a table, which messages call by its name.
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

// A text whose width in a font is as near to a number of points as a few letters allow.
[[nodiscard]] QString textAsWideAs(double width, const QFont& font);

// The frame of a view in the coordinates of a direct or indirect superview.
[[nodiscard]] QRect placeOn(const platform::View& holder, const platform::View& view);

// The four buttons of a row's panel in the order Paid, Later, Info, Delete.
[[nodiscard]] std::vector<platform::View*> buttonsOf(const TodayTableCellView& row);

} // namespace rows
