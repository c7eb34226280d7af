#pragma once

#include "controller/TodayViewController.h"
#include "exchange/LoadTriggers.h"
#include "panel/PanelWindow.h"

#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace panel {

class Welcome;

// How many transactions of a list are overdue, and how many fall due before the day ends.
struct Counts {
    int overdue = 0;
    int dueToday = 0;

    bool operator==(const Counts&) const = default;
};

// How the panel is asked for.
struct Opening {
    QString screen;          // QScreen::name(); empty or unknown: the one that the window has
    QString activationToken; // of the desktop, which lets the window take the focus; empty: none
    bool hidesOnFocusLoss = false;
};

// The widget in its window. Each opening loads a new controller and view, and so does each trigger, also
// while the panel is hidden. If an action that the user chose is still pending, the old view stays until the
// action has been performed, and while the view is in use: a mouse button is pressed, a row is open or an
// action sheet is shown. A panel that hides when it loses the focus waits likewise, but not for a row to
// close. The panel asks the widget for an update when it opens and every 15 minutes; the answer changes
// nothing on screen.
class Panel final {
public:
    // Without triggers, the list stays as it was when the panel was opened.
    Panel(Backdrop backdrop, Height height, int contentWidth,
          std::unique_ptr<exchange::LoadTriggers> triggers = nullptr);
    ~Panel();
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    // Asked at each opening of a hidden panel, as a compositor may come or go.
    void setBackdropOfDesktop(std::function<Backdrop()> source) { backdropOfDesktop_ = std::move(source); }

    // Shows the window and gives it the focus. A window that is shown already stays where it is.
    void open(const Opening& opening = {});
    // Hides the window at once. Pending actions are still performed, and the list stays true.
    void close();
    // Called at each opening, once the panel is painted.
    void setShown(std::function<void()> handler) { shown_ = std::move(handler); }
    // Asked before each load but the first. Where the answer is no, the list stays as it is.
    void setMayLoad(std::function<bool()> question) { mayLoad_ = std::move(question); }
    void setClosed(std::function<void()> handler) { closed_ = std::move(handler); }
    // Called at each opening without a list to show: files may be offered in its place.
    void setSourcesWanted(std::function<void()> handler) { sourcesWanted_ = std::move(handler); }
    // Called with the number of an offered file that the user has chosen.
    void setSourceChosen(std::function<void(int)> handler) { sourceChosen_ = std::move(handler); }
    // What stands in for a list that is not there; null if it is.
    [[nodiscard]] Welcome* welcome() const { return welcome_.get(); }
    // Told at once, and again whenever they have changed.
    void setCountsChanged(std::function<void(const Counts&)> handler);

    [[nodiscard]] PanelWindow& window() const { return *window_; }
    [[nodiscard]] TodayViewController& controller() const { return *controller_; }

    // Loads a new view into the window without showing it.
    void load();
    // The same once the view is not in use.
    void loadWhenIdle();

private:
    void loadContent();
    void loadIfAwaited();
    void hideIfFocusIsLost();
    void lookAgainWhenIdle();
    [[nodiscard]] bool isHeld() const;
    [[nodiscard]] bool isInUse() const;
    void escapePressed();
    void askForSources();
    void askForUpdate() const;
    void tellCounts();
    void countWhenIdle();

    std::unique_ptr<PanelWindow> window_;
    std::unique_ptr<exchange::LoadTriggers> triggers_;
    std::shared_ptr<TodayViewController> controller_;
    std::shared_ptr<Welcome> welcome_; // instead of the controller's view
    QTimer updateTimer_;
    bool awaitsLoad_ = false;       // the panel still shows an old view
    bool looksWhenIdle_ = false;    // the queue will call back once it is idle
    bool hidesOnFocusLoss_ = false; // as the opening says
    std::function<void()> shown_;
    std::function<void()> closed_;
    std::function<void()> sourcesWanted_;
    std::function<void(int)> sourceChosen_;
    std::function<bool()> mayLoad_;
    std::function<void(const Counts&)> countsChanged_;
    std::optional<Counts> counts_; // as told last
    std::function<Backdrop()> backdropOfDesktop_;
};

} // namespace panel
