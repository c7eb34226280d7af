#pragma once

#include "panel/PanelWindow.h"

#include <QPoint>

#include <string>
#include <string_view>

// What the tests of the panel show in it, and where that is.
namespace panel {

inline constexpr double panelTestMoment = 1773129600; // 2026-03-10 08:00 UTC

// A record of a feed that is due so many seconds after 2026-03-10 05:20 UTC.
inline std::string recordOf(std::string_view name, std::string_view planKey, int seconds) {
    return std::string("<dict><key>date</key><real>")
        .append(std::to_string(1773120000 + seconds))
        .append("</real><key>name</key><string>")
        .append(name)
        .append("</string><key>image</key><string>a-picture-that-is-not-there</string>"
                "<key>amount</key><string>1</string><key>income</key><false/><key>expense</key><false/>"
                "<key>planpk</key><string>")
        .append(planKey)
        .append("</string><key>single</key><true/></dict>");
}

// The middle of a row's picture, in points of the window.
inline QPoint rowPoint(int row) {
    return {PanelWindow::horizontalMargin + 25, PanelWindow::verticalMargin + 50 * row + 25};
}

} // namespace panel
