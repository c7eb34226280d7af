#include "TrayDesktop.h"
#include "resources/Language.h"

#include <QApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

class Housekeeping final : public testing::EmptyTestEventListener {
    void OnTestEnd(const testing::TestInfo&) override {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

} // namespace

// Items of a tray are made by the platform of a real X server only, and on the session bus of the process.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    const TrayDesktop desktop;
    const QApplication application(argc, argv);
    resources::installLanguage();
    testing::UnitTest::GetInstance()->listeners().Append(new Housekeeping);
    return RUN_ALL_TESTS();
}
