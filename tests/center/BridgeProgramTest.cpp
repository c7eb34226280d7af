#include "center/BridgeProgram.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QEventLoop>
#include <QStringList>

#include <filesystem>
#include <string>

using center::BridgeProgram;
using center::BridgeResult;

namespace {

class BridgeProgramTest : public testing::Test {
protected:
    // The program that is called, a shell script.
    QString program(const std::string& script) {
        const std::string path = folder.write("korvel-today-bridge", "#!/bin/sh\n" + script);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return QString::fromStdString(path);
    }

    static BridgeResult resultOf(BridgeProgram& program, const QStringList& arguments) {
        BridgeResult result;
        QEventLoop loop;
        program.call(arguments, [&](const BridgeResult& told) {
            result = told;
            loop.quit();
        });
        loop.exec();
        return result;
    }

    support::TemporaryFolder folder;
};

} // namespace

TEST_F(BridgeProgramTest, tellsWhatTheProgramPrints) {
    BridgeProgram bridge(program("echo \"$# $1 $2\"\n"));
    const BridgeResult result = resultOf(bridge, {QStringLiteral("connect"), QStringLiteral("/a b")});
    EXPECT_TRUE(result.isDone);
    EXPECT_EQ(result.output, "2 connect /a b\n");
    EXPECT_EQ(result.fault, QString());
}

TEST_F(BridgeProgramTest, tellsTheLastSentenceOfAFailure) {
    BridgeProgram bridge(program("echo 'korvel-today-bridge: one' >&2\n"
                                 "echo 'korvel-today-bridge: /b.xhb is encrypted' >&2\n"
                                 "exit 1\n"));
    testing::internal::CaptureStderr();
    const BridgeResult result = resultOf(bridge, {});
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "korvel-today-bridge: one\nkorvel-today-bridge: /b.xhb is encrypted\n");
    EXPECT_FALSE(result.isDone);
    EXPECT_EQ(result.fault, QStringLiteral("/b.xhb is encrypted"));
}

TEST_F(BridgeProgramTest, tellsAWarningOfWhatIsDoneToStandardErrorAlone) {
    BridgeProgram bridge(program("echo 'korvel-today-bridge: a warning' >&2\n"));
    testing::internal::CaptureStderr();
    const BridgeResult result = resultOf(bridge, {});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "korvel-today-bridge: a warning\n");
    EXPECT_TRUE(result.isDone);
    EXPECT_EQ(result.fault, QString());
}

TEST_F(BridgeProgramTest, hasASentenceWhereTheProgramSaysNothing) {
    for (const char* script : {"exit 1\n", "kill -9 $$\n"}) {
        BridgeProgram bridge(program(script));
        const BridgeResult result = resultOf(bridge, {});
        EXPECT_FALSE(result.isDone) << script;
        EXPECT_TRUE(result.fault.endsWith(QStringLiteral("/korvel-today-bridge has failed"))) << script;
    }
}

TEST_F(BridgeProgramTest, tellsThatThereIsNoProgram) {
    const QString absent = QString::fromStdString(folder.path("absent"));
    BridgeProgram bridge(absent);
    for (int call = 0; call < 2; ++call) {
        const BridgeResult result = resultOf(bridge, {});
        EXPECT_FALSE(result.isDone);
        EXPECT_TRUE(result.fault.startsWith(absent)) << result.fault.toStdString();
    }
}

// Two at once would wait for each other.
TEST_F(BridgeProgramTest, callsOneAfterTheOther) {
    const std::string log = folder.path("log");
    BridgeProgram bridge(program("echo begin $1 >> " + log + "\nread line\necho end $1 >> " + log + "\n"));
    bridge.call({QStringLiteral("one")}, {});
    bridge.call({QStringLiteral("two")}, {});
    static_cast<void>(resultOf(bridge, {QStringLiteral("three")}));
    EXPECT_EQ(folder.read("log"), "begin one\nend one\nbegin two\nend two\nbegin three\nend three\n");
}

TEST_F(BridgeProgramTest, mayBeCalledFromAnAnswer) {
    BridgeProgram bridge(program("echo $1\n"));
    QByteArray second;
    QEventLoop loop;
    bridge.call({QStringLiteral("one")}, [&](const BridgeResult&) {
        bridge.call({QStringLiteral("two")}, [&](const BridgeResult& result) {
            second = result.output;
            loop.quit();
        });
    });
    loop.exec();
    EXPECT_EQ(second, "two\n");
}

// The process is ended, and no answer comes to those who are gone.
TEST_F(BridgeProgramTest, endsACallWithItself) {
    bool isTold = false;
    {
        BridgeProgram bridge(program("exec sleep 60\n"));
        bridge.call({}, [&](const BridgeResult&) { isTold = true; });
    }
    EXPECT_FALSE(isTold);
}
