#include "center/Tray.h"

#include "center/TrayIcon.h"
#include "platform/desktop/WindowSystem.h"

#include <QCursor>
#include <QDBusVariant>
#include <QMenu>
#include <QSystemTrayIcon>

namespace center {

namespace {

QString watcherName() {
    return QStringLiteral("org.kde.StatusNotifierWatcher"); // of the service and its interface
}

QString watcherPath() {
    return QStringLiteral("/StatusNotifierWatcher");
}

// Wayland tells a program where the pointer is over its own windows only.
QPoint pointer() {
    return platform::isOnWayland() ? QPoint() : QCursor::pos();
}

} // namespace

Tray::Tray(const QDBusConnection& bus)
    : watcher_(bus, watcherName(), BusService::Start::Never) {
    watcher_.setOwnerChanged([this] {
        removeItem();
        lookForHost();
    });
    watcher_.listen(watcherPath(), watcherName(), QStringLiteral("StatusNotifierHostRegistered"),
                    [this](const QDBusMessage&) {
                        isKnown_ = false;
                        lookForHost();
                    });
    watcher_.listen(watcherPath(), watcherName(), QStringLiteral("StatusNotifierHostUnregistered"),
                    [this](const QDBusMessage&) { lookForHost(); });
}

Tray::~Tray() {
    removeItem();
}

void Tray::setCounts(int overdue, int dueToday) {
    const Counts counts{overdue, dueToday};
    if (counts == counts_)
        return;
    const bool isOther = (overdue > 0) != (counts_.overdue > 0);
    counts_ = counts;
    showCounts();
    if (isOther)
        showIcon();
}

void Tray::setColorScheme(ColorScheme scheme) {
    if (scheme == scheme_)
        return;
    scheme_ = scheme;
    showIcon();
}

void Tray::lookForHost() {
    const int question = ++questions_;
    watcher_.readProperty(watcherPath(), watcherName(), QStringLiteral("IsStatusNotifierHostRegistered"),
                          [this, question](const QDBusMessage& reply) {
                              if (question != questions_)
                                  return;
                              const auto value = reply.arguments().value(0).value<QDBusVariant>();
                              if (reply.type() != QDBusMessage::ReplyMessage || !value.variant().toBool())
                                  removeItem();
                              else if (!isKnown_)
                                  makeItem();
                          });
}

// The menu is new as well: the platform's part of it belongs to the item.
void Tray::makeItem() {
    removeItem();
    isKnown_ = true;
    menu_ = std::make_unique<QMenu>();
    addChoice("TrayShowTitle", show_);
    addChoice("TrayAddTitle", add_);
    addChoice("TrayOpenApplicationTitle", openApplication_);
    addChoice("TrayShowFolderTitle", showFolder_);
    menu_->addSeparator();
    addChoice("TrayQuitTitle", quit_);
    item_ = std::make_unique<QSystemTrayIcon>();
    QObject::connect(item_.get(), &QSystemTrayIcon::activated, item_.get(),
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger && toggled_)
                             toggled_(pointer());
                     });
    item_->setContextMenu(menu_.get());
    showCounts();
    showIcon();
    item_->show();
}

void Tray::removeItem() {
    isKnown_ = false;
    if (item_)
        item_->hide();
    item_.reset();
    menu_.reset();
}

// The handlers are members, which may be set after the item was made.
void Tray::addChoice(const char* textId, const std::function<void()>& handler) {
    QObject::connect(menu_->addAction(qtTrId(textId)), &QAction::triggered, menu_.get(), [&handler] {
        if (handler)
            handler();
    });
}

void Tray::showCounts() {
    if (item_)
        item_->setToolTip(QStringLiteral("Korvel Today\n") + countsText(counts_));
}

void Tray::showIcon() {
    if (item_)
        item_->setIcon(trayIcon(counts_.overdue > 0 ? TrayPicture::Overdue : TrayPicture::Usual, scheme_));
}

} // namespace center
