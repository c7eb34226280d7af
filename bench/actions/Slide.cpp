#include "Slide.h"

#include "Container.h"
#include "Figures.h"
#include "panel/Panel.h"
#include "support/ManualMainQueue.h"

#include <QApplication>

using namespace std::chrono_literals;

namespace {

constexpr auto frame = 16ms; // as the event loop's queue ticks
constexpr int framesOfASlide = 13;
constexpr int rounds = 150;

class PaintCount final : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

// Layout, painting and handing the frame to the screen.
void settle() {
    QCoreApplication::sendPostedEvents();
}

// A panel of five rows whose time stands still.
class Bench final {
public:
    Bench()
        : panel_(panel::Backdrop::RoundTranslucent, panel::Height::OfScreen, 320) {
        panel_.open();
        QCoreApplication::processEvents(); // the window shows
        row().cellContentView->installEventFilter(&painted_);
    }

    [[nodiscard]] TodayTableCellView& row() const { return *panel_.controller().cellArray[1]; }

    double still() {
        const int before = painted_.count;
        const double time = seconds([this] {
            row().update();
            settle();
        });
        requirePainting(before);
        return time;
    }

    double slide() {
        const int before = painted_.count;
        const double time = seconds([this] {
            queue_.advance(frame);
            settle();
        });
        requirePainting(before);
        return time;
    }

    void arrive() {
        queue_.advance(1s);
        settle();
    }

private:
    void requirePainting(int before) const {
        if (painted_.count != before + 1)
            fail("a frame was painted " + std::to_string(painted_.count - before) + " times");
    }

    support::ManualMainQueue queue_;
    panel::Panel panel_;
    PaintCount painted_;
};

} // namespace

void measureSlide(const std::string& feeds, const std::string& memory) {
    Container container(memory, feeds + "/sorted-1000.plist");
    container.keepRecords(5);
    Bench bench;
    std::vector<double> sliding;
    std::vector<double> stillThere;
    std::vector<double> atRest;
    for (int round = 0; round < rounds; ++round) {
        atRest.push_back(bench.still());
        bench.row().cellClicked();
        settle();
        // The last frame also runs what follows the slide.
        for (int i = 0; i < framesOfASlide - 1; ++i) {
            sliding.push_back(bench.slide());
            stillThere.push_back(bench.still());
        }
        bench.arrive();
        bench.row().cellClicked();
        bench.arrive();
    }
    print(
        {"a frame of the slide", median(sliding), median(stillThere), "the row standing still there", "1.5"});
    print({"a frame of the slide", median(sliding), median(atRest), "the closed row standing still", "1.5"});
}
