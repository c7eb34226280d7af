#include "panel/X11Window.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace panel {

namespace {

// A screen is scaled around its upper left corner.
QPoint inPoints(QPoint pixels) {
    const auto screens = QGuiApplication::screens();
    const auto screen = std::ranges::find_if(screens, [&](const QScreen* candidate) {
        const QRect points = candidate->geometry();
        return QRect(points.topLeft(), points.size() * candidate->devicePixelRatio()).contains(pixels);
    });
    if (screen == screens.end())
        return pixels;
    const QPoint corner = (*screen)->geometry().topLeft();
    return corner + (pixels - corner) / (*screen)->devicePixelRatio();
}

xcb_connection_t* connectionToServer() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

// A reply of the X server.
template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

} // namespace

std::optional<QPoint> placeOfX11Window(const QWindow& window) {
    xcb_connection_t* connection = connectionToServer();
    if (!connection)
        return std::nullopt;
    const auto id = static_cast<xcb_window_t>(window.winId());
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto cookie = xcb_translate_coordinates(connection, id, root, 0, 0);
    const Owned<xcb_translate_coordinates_reply_t> reply(
        xcb_translate_coordinates_reply(connection, cookie, nullptr), &std::free);
    if (!reply)
        return std::nullopt;
    return inPoints({reply->dst_x, reply->dst_y});
}

bool isFocusedX11Window(const QWindow& window) {
    xcb_connection_t* connection = connectionToServer();
    if (!connection)
        return false;
    const Owned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr), &std::free);
    return reply && reply->focus == static_cast<xcb_window_t>(window.winId());
}

bool isX11FocusIn(const QByteArray& eventType, const void* message) {
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_focus_in_event_t*>(message);
    constexpr int withoutSentMark = 0x7f;
    // The server also tells the window under the pointer when the root window has got the focus.
    return (event->response_type & withoutSentMark) == XCB_FOCUS_IN &&
           event->detail != XCB_NOTIFY_DETAIL_POINTER;
}

void setX11Background(const QWindow& window, std::uint32_t pixel) {
    if (xcb_connection_t* connection = connectionToServer())
        xcb_change_window_attributes(connection, static_cast<xcb_window_t>(window.winId()), XCB_CW_BACK_PIXEL,
                                     &pixel);
}

} // namespace panel
