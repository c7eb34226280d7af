#include "platform/system/Workspace.h"

#include "OpenerFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using platform::Workspace;
using support::EnvironmentVariable;
using testing::ElementsAre;

namespace {

const QString url = QStringLiteral("korvelWidget://tw_all_transactions");

} // namespace

TEST(WorkspaceTest, opensWithGio) {
    const OpenerFolder folder;
    folder.install("gio");
    EXPECT_TRUE(Workspace::openUrl(url));
    EXPECT_THAT(folder.reportOf("gio").arguments,
                ElementsAre("gio", "open", "korvelWidget://tw_all_transactions"));
}

TEST(WorkspaceTest, opensWithXdgOpenWhereGioIsNotInstalled) {
    const OpenerFolder folder;
    folder.install("xdg-open");
    EXPECT_TRUE(Workspace::openUrl(url));
    EXPECT_THAT(folder.reportOf("xdg-open").arguments,
                ElementsAre("xdg-open", "korvelWidget://tw_all_transactions"));
}

TEST(WorkspaceTest, prefersGio) {
    const AdoptedOrphans orphans;
    const OpenerFolder folder;
    folder.install("gio");
    folder.install("xdg-open");
    EXPECT_TRUE(Workspace::openUrl(url));
    EXPECT_THAT(folder.reportOf("gio").arguments, testing::SizeIs(3));
    EXPECT_FALSE(folder.hasReport("xdg-open"));
}

// xdg-open would start a browser for a scheme without a handler.
TEST(WorkspaceTest, triesNothingElseWhereGioFails) {
    const AdoptedOrphans orphans;
    const OpenerFolder folder;
    folder.install("gio");
    folder.install("xdg-open");
    const EnvironmentVariable status("PROBE_STATUS", "2");
    EXPECT_TRUE(Workspace::openUrl(url));
    EXPECT_THAT(folder.reportOf("gio").arguments, testing::SizeIs(3));
    EXPECT_FALSE(folder.hasReport("xdg-open"));
}

TEST(WorkspaceTest, isFalseWhereNoOpenerIsInstalled) {
    const OpenerFolder folder;
    EXPECT_FALSE(Workspace::openUrl(url));
}

TEST(WorkspaceTest, passesTheTextAsItStands) {
    const OpenerFolder folder;
    folder.install("gio");
    const std::string text = "KORVELwidget://A/../b?c=%zz&d=\"e f\"#\xc3\xa4\n\xf0\x9f\x98\x80";
    EXPECT_TRUE(Workspace::openUrl(QString::fromStdString(text)));
    EXPECT_THAT(folder.reportOf("gio").arguments, ElementsAre("gio", "open", text));
}

TEST(WorkspaceTest, returnsWhileTheOpenerRuns) {
    OpenerFolder folder;
    folder.install("gio");
    folder.makeProbesWait();
    EXPECT_TRUE(Workspace::openUrl(url));
    const pid_t opener = folder.reportOf("gio").process;
    folder.release();
    EXPECT_TRUE(waitForEnd(opener));
}

TEST(WorkspaceTest, anotherOpenerMayBePutInPlace) {
    const AdoptedOrphans orphans;
    const OpenerFolder folder;
    folder.install("gio");
    QString opened;
    Workspace::setOpener([&opened](const QString& text) {
        opened = text;
        return false;
    });
    EXPECT_FALSE(Workspace::openUrl(url));
    EXPECT_EQ(opened, url);
    EXPECT_FALSE(folder.hasReport("gio"));
    Workspace::setOpener({});
    EXPECT_TRUE(Workspace::openUrl(url));
    EXPECT_THAT(folder.reportOf("gio").arguments, testing::SizeIs(3));
}
