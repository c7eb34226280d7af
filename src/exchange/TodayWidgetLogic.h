#pragma once

#include "model/TodayTransaction.h"
#include "model/TodayTransactionAction.h"
#include "model/TodayTransactionsCount.h"
#include "platform/images/Image.h"

#include <QRectF>
#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace platform {
class ExtensionContext;
}

// The whole exchange with the host application: static operations that keep nothing between calls. The shared
// container and the shared settings are looked up anew at every call, always those of the full edition's
// group. Main thread only.
class TodayWidgetLogic final {
public:
    TodayWidgetLogic() = delete;

    // --- settings (TodayWidgetLogicContainer.cpp)

    // How many transactions to show: None if the settings cannot be opened or "show_transactions_count" is
    // negative, otherwise Custom(5) whatever its magnitude, on purpose. Never All.
    static TodayTransactionsCount getTransactionsCountToShow();

    // --- the feed (TodayWidgetLogicFeed.cpp)

    // The transactions of notifications.xml that are due up to the limit of "notification_days_count", by
    // date, a NaN date last. Soft (an empty list): no container, no feed, an unreadable one, a root that is
    // no array. Fatal: a record that breaks the feed's layout (see docs/formats.md), a day count that
    // overflows, a calendar that yields no date.
    static std::vector<TodayTransactionPtr> getTodayTransactionsArray();

    // --- actions and the host application (TodayWidgetLogicActions.cpp)

    // Paid, Later and Delete are logged in the account's actions.xml, then the feed is rewritten; Info leaves
    // the request in the shared settings and opens the host application. The context is not used, on purpose.
    // Soft: files and folders that cannot be written, an application that cannot be opened. Fatal, with the
    // action logged: no feed, an unreadable one, a root that is no array, a record without a plan key, one of
    // the same plan without a date, a calendar that yields no date. Fatal before anything: no container.
    static void performTransactionAction(const TodayTransaction& transaction, TodayTransactionAction action,
                                         platform::ExtensionContext* context);
    static void performNewTransaction(platform::ExtensionContext* context);
    static void performAllTransactions(platform::ExtensionContext* context);

    // --- icons (TodayWidgetLogicImages.cpp)

    // The prepared icon of a name: from 23 UTF-16 code units on a picture, cut to an oval of the rectangle's
    // size (null where the file is no image); shorter, a glyph, turned white at its own size. Fatal: no
    // container; a glyph that does not load.
    static platform::Image imageByName(const QString& name, const QRectF& rect);

private:
    static std::string getGroupContainerID();
    static std::string accountPk();
    static QString getUrlScheme();
    static std::optional<std::string> containerFolder();
    static platform::Image circularImage(const platform::Image& image, const QRectF& rect);
    static platform::Image tintedImage(const platform::Image& image);
    static void saveActionType(std::int64_t type, const TodayTransaction& item, std::int64_t parameter);
    static void openHost(const char* request, const TodayTransaction* transaction);

    friend class TodayWidgetLogicTestAccess;
};
