#include "Stalls.h"

#include "Container.h"
#include "Figures.h"
#include "exchange/TodayWidgetLogic.h"
#include "panel/Panel.h"
#include "platform/system/MainQueue.h"

#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <memory>
#include <poll.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr int rounds = 4;
constexpr auto restAtLeast = 250ms; // longer than an animation; deferred work is waited for anyway

using Clock = std::chrono::steady_clock;

// How long the main thread goes without waiting for events, which is how late an event may be served. Noted
// where Qt's event loop waits: looking for events without waiting for any ends no stretch.
struct Stretches {
    const pthread_t thread = pthread_self();
    Clock::time_point start = Clock::now();
    Clock::duration longest{};
    int waits = 0;

    void end() { longest = std::max(longest, Clock::now() - start); }
} stretches;

bool isWaiting(const timespec* timeout) {
    return !timeout || timeout->tv_sec != 0 || timeout->tv_nsec != 0;
}

// Runs work from the event loop, then the loop until all has come to rest; gives the longest stretch.
double longestAfter(const std::function<void()>& work) {
    QEventLoop loop;
    QTimer atRest;
    QTimer::singleShot(0, &loop, [&] {
        stretches.start = Clock::now();
        stretches.longest = {};
        work();
        atRest.start(restAtLeast);
    });
    QObject::connect(&atRest, &QTimer::timeout, &loop, [&loop] {
        if (platform::MainQueue::current().isIdle())
            loop.quit();
    });
    loop.exec();
    stretches.end();
    if (stretches.waits == 0) // the very first call is about a slide, with pauses between its frames
        fail("the event loop was not seen to wait");
    return std::chrono::duration<double>(stretches.longest).count();
}

class Bench final {
public:
    Bench(const std::string& feeds, const std::string& memory, std::size_t records)
        : container_(memory, feeds + "/sorted-1000.plist")
        , records_(records) {
        container_.keepRecords(records);
    }

    double stallOfPaid() {
        open();
        const double stall = longestAfter([this] { row(1).rightButtonsPanel->buttonPaidClick(); });
        requireRows(records_ - 1);
        return stall;
    }

    double stallOfLater() {
        open();
        (void)longestAfter([this] { row(1).rightButtonsPanel->buttonLaterClick(); });
        if (!panel_->controller().actionSheet)
            fail("no sheet");
        // Tomorrow, or earlier in the month on its last day: the record stays or goes, others stay.
        const double stall =
            longestAfter([this] { panel_->controller().actionSheet->checkButton1->performClick(); });
        if (panel_->controller().actionSheet)
            fail("the sheet stays");
        return stall;
    }

    // As after a click: with a panel opened just before, so that both find the caches as that leaves them.
    double action(const TodayTransactionAction& action) {
        open();
        return seconds(
            [&] { TodayWidgetLogic::performTransactionAction(container_.middle(), action, nullptr); });
    }

    // The load itself; the rows that it replaces go later.
    double load() {
        open();
        const double time = seconds([this] { panel_->controller().loadData(); });
        requireRows(records_);
        return time;
    }

    // The load and all that the loop does after it.
    double loadToRest() {
        open();
        return longestAfter([this] { panel_->controller().loadData(); });
    }

private:
    // A new panel with its second row open.
    void open() {
        container_.putBack();
        QCoreApplication::sendPostedEvents(); // widgets that have events waiting take long to go
        panel_.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        panel_ =
            std::make_unique<panel::Panel>(panel::Backdrop::RoundTranslucent, panel::Height::OfScreen, 320);
        panel_->open();
        (void)longestAfter([this] { row(1).cellClicked(); });
        requireRows(records_);
    }

    [[nodiscard]] TodayTableCellView& row(std::size_t number) const {
        return *panel_->controller().cellArray[number];
    }
    void requireRows(std::size_t count) const {
        if (panel_->controller().cellArray.size() != count)
            fail(std::to_string(panel_->controller().cellArray.size()) + " rows");
    }

    Container container_;
    std::size_t records_;
    std::unique_ptr<panel::Panel> panel_;
};

} // namespace

// In the place of the C library's, for Qt's event loop.
extern "C" int ppoll(pollfd* files, nfds_t count, const timespec* timeout, const sigset_t* mask) {
    const bool ends = isWaiting(timeout) && pthread_equal(pthread_self(), stretches.thread);
    if (ends)
        stretches.end();
    timespec left = timeout ? *timeout : timespec{}; // the system call counts it down
    const auto result =
        syscall(SYS_ppoll, files, count, timeout ? &left : nullptr, mask, std::size_t(_NSIG / 8));
    if (ends) {
        ++stretches.waits;
        stretches.start = Clock::now();
    }
    return static_cast<int>(result);
}

static void measureStallsOf(std::size_t records, const std::string& feeds, const std::string& memory) {
    Bench bench(feeds, memory, records);
    std::vector<double> paid, later, actionPaid, actionLater, load, loadToRest;
    for (int round = 0; round < rounds; ++round) {
        for (int turn = 0; turn < 3; ++turn) { // short, and so more often disturbed
            paid.push_back(bench.stallOfPaid());
            actionPaid.push_back(bench.action(TodayTransactionAction::Paid()));
        }
        later.push_back(bench.stallOfLater());
        actionLater.push_back(bench.action(TodayTransactionAction::Later(1)));
        load.push_back(bench.load());
        loadToRest.push_back(bench.loadToRest());
    }
    // With few rows the frames of the animation, which every action shows, take longer than the action.
    const std::string bar = records == 1000 ? "1.2" : "-";
    const std::string suffix = ", " + std::to_string(records) + " records, least of many";
    print({"longest stall after Paid" + suffix, least(paid), least(actionPaid), "the action alone", bar});
    print({"longest stall after Later" + suffix, least(later), least(actionLater) + least(load),
           "action and load alone", bar});
    print({"longest stall after a load" + suffix, least(loadToRest), least(load), "the load alone", "-"});
}

void measureStalls(const std::string& feeds, const std::string& memory) {
    for (const std::size_t records : {std::size_t(5), std::size_t(40), std::size_t(1000)})
        measureStallsOf(records, feeds, memory);
}
