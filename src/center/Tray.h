#pragma once

#include "center/BusService.h"
#include "center/ColorScheme.h"
#include "center/Counts.h"

#include <QPoint>

#include <functional>
#include <memory>
#include <utility>

class QMenu;
class QSystemTrayIcon;

namespace center {

// The item in the desktop's tray (StatusNotifierItem). It is there as long as a host that shows items is
// registered with the watcher, and is made anew for each watcher and each host: one that has started later
// may not know of items that were registered before. Without a watcher, a host or a bus there is no item.
//
// Qt asks whether there is a tray when it makes the first item of a process, waits for the answer and keeps
// it, so that no other item may be made before there is one.
class Tray final {
public:
    explicit Tray(const QDBusConnection& bus);
    ~Tray();
    Tray(const Tray&) = delete;
    Tray& operator=(const Tray&) = delete;

    [[nodiscard]] bool isShown() const { return item_ != nullptr; }

    // A click. The point is the pointer's on the desktop, null where the window system does not tell it.
    void setToggled(std::function<void(QPoint)> handler) { toggled_ = std::move(handler); }

    // The choices of the menu.
    void setShowChosen(std::function<void()> handler) { show_ = std::move(handler); }
    void setAddChosen(std::function<void()> handler) { add_ = std::move(handler); }
    void setOpenApplicationChosen(std::function<void()> handler) { openApplication_ = std::move(handler); }
    void setShowFolderChosen(std::function<void()> handler) { showFolder_ = std::move(handler); }
    void setQuitChosen(std::function<void()> handler) { quit_ = std::move(handler); }

    void setCounts(int overdue, int dueToday);
    void setColorScheme(ColorScheme scheme);

private:
    void lookForHost();
    void makeItem();
    void removeItem();
    void addChoice(const char* textId, const std::function<void()>& handler);
    void showCounts();
    void showIcon();

    BusService watcher_;
    int questions_ = 0;    // only the answer to the last one counts
    bool isKnown_ = false; // to all hosts
    std::unique_ptr<QMenu> menu_;
    std::unique_ptr<QSystemTrayIcon> item_;
    Counts counts_;
    ColorScheme scheme_ = ColorScheme::Light;
    std::function<void(QPoint)> toggled_;
    std::function<void()> show_;
    std::function<void()> add_;
    std::function<void()> openApplication_;
    std::function<void()> showFolder_;
    std::function<void()> quit_;
};

} // namespace center
