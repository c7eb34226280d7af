#pragma once

#include "center/PanelWindow.h"
#include "controller/TodayViewController.h"

#include <QTimer>

#include <functional>
#include <memory>

namespace center {

// The widget in its window, from opening to closing: a new controller and view each time it is opened. Where
// what was chosen before is still pending, the view of before shows until that is carried out, and then on as
// long as it is in use: a press is held, a row is open, a sheet is shown. It asks the widget for an update on
// opening and every 15 minutes; the answer changes nothing on screen.
class Panel final {
public:
    Panel(Backdrop backdrop, Height height, int contentWidth);
    ~Panel();
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    void open();
    // Hides the window at once. What was chosen and is still pending is carried out.
    void close();
    void setClosed(std::function<void()> handler) { closed_ = std::move(handler); }

    [[nodiscard]] PanelWindow& window() const { return *window_; }
    [[nodiscard]] TodayViewController& controller() const { return *controller_; }

    // Loads the view into the window without showing it.
    void load();
    // Loads the view that an opening has asked for, unless that has been done or has to wait longer.
    void loadIfAwaited();

private:
    [[nodiscard]] bool isInUse() const;
    void escapePressed();
    void askForUpdate() const;

    std::unique_ptr<PanelWindow> window_;
    std::shared_ptr<TodayViewController> controller_;
    QTimer updateTimer_;
    QTimer loadTimer_; // runs while a load is awaited only
    bool awaitsLoad_ = false;
    std::function<void()> closed_;
};

} // namespace center
