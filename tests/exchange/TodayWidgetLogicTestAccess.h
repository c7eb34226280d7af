#pragma once

#include "exchange/TodayWidgetLogic.h"

// Opens the private operations that other operations build on to their tests.
class TodayWidgetLogicTestAccess final {
public:
    static std::string getGroupContainerID() { return TodayWidgetLogic::getGroupContainerID(); }
    static std::string accountPk() { return TodayWidgetLogic::accountPk(); }
    static QString getUrlScheme() { return TodayWidgetLogic::getUrlScheme(); }
    static std::optional<std::string> containerFolder() { return TodayWidgetLogic::containerFolder(); }
};
