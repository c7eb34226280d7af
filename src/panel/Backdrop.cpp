#include "panel/Backdrop.h"

#include "platform/desktop/WindowSystem.h"

#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <string>

#include <xcb/xcb.h>

namespace panel {

namespace {

// A compositing manager owns the selection _NET_WM_CM_Sn of its screen n (Extended Window Manager Hints).
bool isComposited(xcb_connection_t* connection, int screen) {
    const std::string name = "_NET_WM_CM_S" + std::to_string(screen);
    const auto atomCookie = xcb_intern_atom(connection, 1, static_cast<uint16_t>(name.size()), name.c_str());
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        xcb_intern_atom_reply(connection, atomCookie, nullptr), &std::free);
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return false;
    const auto ownerCookie = xcb_get_selection_owner(connection, atom->atom);
    const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner(
        xcb_get_selection_owner_reply(connection, ownerCookie, nullptr), &std::free);
    return owner && owner->owner != XCB_WINDOW_NONE;
}

// The n of a display name such as ":0.n"; 0 if it has none.
int screenNumber() {
    const std::string display = qEnvironmentVariable("DISPLAY").toStdString();
    const std::size_t colon = display.rfind(':');
    const std::size_t dot = colon == std::string::npos ? colon : display.find('.', colon);
    return dot == std::string::npos ? 0 : std::atoi(display.c_str() + dot + 1);
}

} // namespace

Backdrop backdropOfDesktop() {
    // A window with the desktop's own frame has the desktop's corners.
    if (platform::isOnWayland())
        return Backdrop::SquareOpaque;
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return Backdrop::RoundTranslucent;
    return isComposited(connection, screenNumber()) ? Backdrop::RoundTranslucent : Backdrop::SquareOpaque;
}

} // namespace panel
