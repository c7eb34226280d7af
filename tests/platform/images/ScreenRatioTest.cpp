#include "platform/images/Image.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <gtest/gtest.h>

namespace platform {
namespace {

int argumentCount = 1;
char programName[] = "screen_ratio_test";
char* arguments[] = {programName, nullptr};

TEST(ScreenRatioTest, isTheApplicationsRatio) {
    const QGuiApplication application(argumentCount, arguments);
    EXPECT_EQ(screenRatio(), 2.0);
}

TEST(ScreenRatioTest, isOneInAnApplicationWithoutScreens) {
    const QCoreApplication application(argumentCount, arguments);
    EXPECT_EQ(screenRatio(), 1.0);
}

} // namespace
} // namespace platform
