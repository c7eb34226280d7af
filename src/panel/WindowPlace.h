#pragma once

#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QScreen>
#include <QSize>

#include <vector>

namespace panel {

// Where the panel's window is to stand: at the right edge of a screen's work area, or where the user has
// moved it since it was docked there. A window that would reach beyond the work area's bottom stands higher
// by as much. Points of the desktop.
class WindowPlace final {
public:
    // Between the window and the edges of the work area, points.
    static constexpr int screenMargin = 12;

    // Docks a window that is hidden, on the screen that it has if no other is given; at first that is the
    // primary one.
    void dock(QScreen* screen);

    // The window system tells where the window is now. A place that was not stated is the user's,
    // unless it is the edge.
    void windowIsAt(QPoint point);

    // The screens have changed, perhaps in scale: the window has not moved but is here now.
    void screensChanged(QPoint here);

    [[nodiscard]] bool isMoved() const { return isMoved_; }
    [[nodiscard]] bool isStated(QPoint point) const;

    // The place to state together with a size.
    [[nodiscard]] QPoint state(QSize size);

    // The screen is about to go: a window on it is on the primary one from then on.
    void screenGoes(const QScreen& screen);

    // The screen; null where there is none at all.
    [[nodiscard]] QScreen* screen() const;
    // How tall a window may be.
    [[nodiscard]] int tallest() const;

private:
    [[nodiscard]] QRect workArea() const;
    [[nodiscard]] QPoint docked() const;

    QPointer<QScreen> screen_;
    QSize size_;
    bool isMoved_ = false;
    QPoint moved_;               // by the user
    std::vector<QPoint> stated_; // since the one at which the window was last seen
};

} // namespace panel
