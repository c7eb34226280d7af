#include "platform/views/Disposal.h"

#include "platform/views/View.h"

#include <QBasicTimer>
#include <QCoreApplication>
#include <QTimerEvent>

#include <deque>

namespace platform {

namespace {

// A row of the panel takes some 15 microseconds to go.
constexpr int viewsPerSlice = 32;
constexpr int pauseBetweenSlices = 4; // milliseconds

class Line final : public QObject {
public:
    void add(View& view) {
        views_.push_back(&view);
        if (!firstSlice_ && !pause_.isActive()) {
            firstSlice_ = new FirstSlice(*this);
            firstSlice_->deleteLater();
        }
    }

    // A view may add others as it goes; they are deleted with it while there is room for them.
    void deleteSlice() {
        for (int count = 0; count < viewsPerSlice && !views_.empty(); ++count)
            deleteFirst();
        if (views_.empty())
            pause_.stop();
        else if (!pause_.isActive())
            pause_.start(pauseBetweenSlices, Qt::PreciseTimer, this);
    }

    void deleteAll() {
        while (!views_.empty())
            deleteFirst();
        pause_.stop();
    }

protected:
    void timerEvent(QTimerEvent*) override { deleteSlice(); }

private:
    // Goes when any object does that is to be deleted later, and takes the first views with it: Qt knows from
    // which event loop's turn on that is safe.
    class FirstSlice final : public QObject {
    public:
        explicit FirstSlice(Line& line)
            : line_(line) {}
        ~FirstSlice() override {
            line_.deleteSlice();
            line_.firstSlice_ = nullptr;
        }

    private:
        Line& line_;
    };

    void deleteFirst() {
        View* view = views_.front();
        views_.pop_front();
        delete view;
    }

    std::deque<View*> views_;
    FirstSlice* firstSlice_ = nullptr; // while it is awaited
    QBasicTimer pause_;
};

// Never destroyed: the last views may go after the statics do.
Line& line() {
    static Line* const only = [] {
        qAddPostRoutine(deleteWaitingViews);
        return new Line;
    }();
    return *only;
}

} // namespace

void deleteInTurn(View& view) {
    line().add(view);
}

void deleteWaitingViews() {
    line().deleteAll();
}

} // namespace platform
