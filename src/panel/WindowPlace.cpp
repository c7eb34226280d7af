#include "panel/WindowPlace.h"

#include <QGuiApplication>

#include <algorithm>
#include <cstdlib>

namespace panel {

namespace {

// A place in whole pixels may lie between points.
bool isSame(QPoint one, QPoint other) {
    const QPoint apart = one - other;
    return std::abs(apart.x()) <= 1 && std::abs(apart.y()) <= 1;
}

bool isOnAnyScreen(const QRect& window) {
    return std::ranges::any_of(QGuiApplication::screens(),
                               [&](const QScreen* screen) { return screen->geometry().intersects(window); });
}

} // namespace

void WindowPlace::dock(QScreen* screen) {
    if (screen)
        screen_ = screen;
    isMoved_ = false;
    stated_.clear();
}

// A place that was stated before the last one is told by a window manager that has not come to the last.
void WindowPlace::windowIsAt(QPoint point) {
    const auto known = std::ranges::find_if(stated_, [&](QPoint stated) { return isSame(stated, point); });
    if (known != stated_.end()) {
        stated_.erase(stated_.begin(), known);
        return;
    }
    if (QScreen* screen = QGuiApplication::screenAt(point))
        screen_ = screen;
    isMoved_ = !isSame(point, docked());
    moved_ = point;
    stated_ = {point};
}

// A place that was stated before has other points now. The window manager tells of it once more with the size
// that the window has at another scale.
void WindowPlace::screensChanged(QPoint here) {
    stated_.push_back(here);
}

bool WindowPlace::isStated(QPoint point) const {
    return std::ranges::any_of(stated_, [&](QPoint stated) { return isSame(stated, point); });
}

QPoint WindowPlace::state(QSize size) {
    size_ = size;
    isMoved_ = isMoved_ && isOnAnyScreen({moved_, size});
    const QRect room = workArea();
    QPoint place = isMoved_ ? moved_ : docked();
    place.setY(std::max(room.top(), std::min(place.y(), room.bottom() + 1 - size.height())));
    if (stated_.empty() || stated_.back() != place)
        stated_.push_back(place);
    return place;
}

void WindowPlace::screenGoes(const QScreen& screen) {
    if (screen_ == &screen)
        screen_ = nullptr;
}

QScreen* WindowPlace::screen() const {
    return screen_ ? screen_.data() : QGuiApplication::primaryScreen();
}

int WindowPlace::tallest() const {
    return std::max(1, workArea().height() - 2 * screenMargin);
}

QPoint WindowPlace::docked() const {
    const QRect room = workArea();
    return {room.right() + 1 - size_.width() - screenMargin, room.top() + screenMargin};
}

QRect WindowPlace::workArea() const {
    const QScreen* here = screen();
    return here ? here->availableGeometry() : QRect();
}

} // namespace panel
