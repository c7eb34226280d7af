#include "panel/WindowPlace.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace panel {

std::optional<QPoint> placeOfWindow(const QWindow& window) {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return std::nullopt;
    const auto id = static_cast<xcb_window_t>(window.winId());
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto cookie = xcb_translate_coordinates(connection, id, root, 0, 0);
    const std::unique_ptr<xcb_translate_coordinates_reply_t, decltype(&std::free)> reply(
        xcb_translate_coordinates_reply(connection, cookie, nullptr), &std::free);
    if (!reply)
        return std::nullopt;
    // A screen is scaled around its upper left corner.
    const QPoint corner = window.screen()->geometry().topLeft();
    return corner + (QPoint(reply->dst_x, reply->dst_y) - corner) / window.devicePixelRatio();
}

} // namespace panel
