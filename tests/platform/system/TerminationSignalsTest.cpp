#include "platform/system/TerminationSignals.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <csignal>
#include <memory>

using platform::TerminationSignals;

namespace {

class TerminationSignalsTest : public testing::Test {
protected:
    void waitForCall() {
        while (calls == 0)
            application.processEvents(QEventLoop::WaitForMoreEvents);
    }

    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    int calls = 0;
};

} // namespace

TEST_F(TerminationSignalsTest, callTheHandlerFromTheEventLoop) {
    const TerminationSignals signals([this] { ++calls; });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGTERM}) {
        calls = 0;
        std::raise(signal);
        EXPECT_EQ(calls, 0);
        waitForCall();
        application.processEvents();
        EXPECT_EQ(calls, 1);
    }
}

TEST_F(TerminationSignalsTest, leaveASignalIgnoredThatWasSo) {
    std::signal(SIGHUP, SIG_IGN);
    const TerminationSignals signals([this] { ++calls; });
    std::raise(SIGHUP);
    application.processEvents();
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

TEST_F(TerminationSignalsTest, haveTheirOldEffectAfterwards) {
    EXPECT_EXIT(
        {
            std::make_unique<TerminationSignals>([] {}).reset();
            std::raise(SIGTERM);
        },
        testing::KilledBySignal(SIGTERM), "");
}
