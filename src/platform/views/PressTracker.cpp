#include "platform/views/PressTracker.h"

#include <QGuiApplication>
#include <QStyleHints>

#include <cmath>
#include <utility>

namespace platform {

namespace {

// The nearest view above that shared references own, or the view itself. The toolkit's tree owns the others.
std::shared_ptr<View> ownerOf(View& view) {
    for (View* above = &view; above; above = above->superview())
        if (auto owner = above->weak_from_this().lock())
            return owner;
    return nullptr;
}

// Where in a window the mouse is. Not by the event's own global position: until the window manager has said
// where it put the window, that one does not fit the toolkit's idea of the window's place.
QPointF placeIn(const QWidget& window, const View& receiver, const QMouseEvent& event) {
    return window.mapFromGlobal(receiver.mapToGlobal(event.position()));
}

} // namespace

// Never destroyed: at the end of the program a view that it holds could not be deleted any more.
PressTracker& PressTracker::shared() {
    static auto* const tracker = new PressTracker;
    return *tracker;
}

void PressTracker::press(View& receiver, const QMouseEvent& event) {
    cancel();
    QWidget& window = *receiver.window();
    const QPointF place = placeIn(window, receiver, event);
    View* hit = receiver.rootView().viewAtPointOfWindow(place);
    View* target = viewInSeries(hit, event);
    if (!target)
        return;
    held_ = {target, ownerOf(*target), &window, place, target->mapFromGlobal(window.mapToGlobal(place))};
    // The toolkit sends a release to no widget if the one that was pressed has been taken out, but its window
    // gets it in any case.
    if (QWindow* handle = window.windowHandle())
        handle->installEventFilter(this);
    target->mouseDown(eventAt(held_, place));
}

View* PressTracker::viewInSeries(View* hit, const QMouseEvent& event) {
    const bool continues = continuesSeries(event);
    series_.position = event.globalPosition();
    series_.time = event.timestamp();
    series_.hasBegun = true;
    if (!continues)
        series_.taker = hit;
    return hit == series_.taker ? hit : nullptr;
}

bool PressTracker::continuesSeries(const QMouseEvent& event) const {
    const QStyleHints& hints = *QGuiApplication::styleHints();
    const QPointF way = event.globalPosition() - series_.position;
    const int distance = hints.mouseDoubleClickDistance();
    return series_.hasBegun &&
           event.timestamp() - series_.time < static_cast<quint64>(hints.mouseDoubleClickInterval()) &&
           std::abs(way.x()) <= distance && std::abs(way.y()) <= distance;
}

void PressTracker::drag(View& receiver, const QMouseEvent& event) const {
    if (held_.target && held_.window)
        held_.target->mouseDragged(eventAt(held_, placeIn(*held_.window, receiver, event)));
}

void PressTracker::release(View& receiver, const QMouseEvent& event) {
    if (held_.window)
        finish(placeIn(*held_.window, receiver, event));
}

void PressTracker::finish(QPointF place) {
    const Held held = letGo();
    if (held.target && held.window)
        held.target->mouseUp(eventAt(held, place));
}

void PressTracker::cancel() {
    const Held held = letGo();
    if (held.target)
        held.target->mouseCancelled();
}

void PressTracker::cancelIn(const View& view) {
    if (held_.target == &view || view.isAncestorOf(held_.target))
        cancel();
}

PressTracker::Held PressTracker::letGo() {
    if (held_.window && held_.window->windowHandle())
        held_.window->windowHandle()->removeEventFilter(this);
    return std::exchange(held_, {});
}

MouseEvent PressTracker::eventAt(const Held& held, QPointF place) {
    return {held.window->mapToGlobal(place), held.pressedAtInTarget + place - held.pressedAt};
}

bool PressTracker::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease) {
        const auto& mouse = static_cast<QMouseEvent&>(*event);
        if (mouse.button() == Qt::LeftButton)
            finish(mouse.position());
    }
    return QObject::eventFilter(watched, event);
}

} // namespace platform
