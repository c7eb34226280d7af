#include "program/Options.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using program::Options;
using program::parseOptions;
using program::UsageError;

namespace {

Options parsed(const std::vector<std::string>& arguments) {
    const auto result = parseOptions(arguments);
    EXPECT_TRUE(std::holds_alternative<Options>(result));
    return std::holds_alternative<Options>(result) ? std::get<Options>(result) : Options();
}

struct Misuse {
    std::vector<std::string> arguments;
    const char* message;
};

class Misuses : public testing::TestWithParam<Misuse> {};

} // namespace

TEST(Options, askForThePanelWithoutArguments) {
    const Options options = parsed({});
    EXPECT_TRUE(options.containers.empty());
    EXPECT_FALSE(options.snapshot.has_value());
    EXPECT_EQ(options.command, "show");
    EXPECT_FALSE(options.showsHelp);
    EXPECT_FALSE(options.showsVersion);
}

TEST(Options, takeAFolderOfContainersInBothSpellings) {
    EXPECT_EQ(parsed({"--containers", "/a b"}).containers, "/a b");
    EXPECT_EQ(parsed({"--containers=/a=b"}).containers, "/a=b");
}

TEST(Options, nameWhatTheProgramThatRunsIsAskedFor) {
    for (const char* command : {"background", "show", "toggle", "hide", "quit"})
        EXPECT_EQ(parsed({std::string("--") + command}).command, command);
}

TEST(Options, takeASnapshotAtScaleOneAnd320PointsWide) {
    const Options options = parsed({"--snapshot", "x.png"});
    ASSERT_TRUE(options.snapshot.has_value());
    EXPECT_EQ(options.snapshot->file, QStringLiteral("x.png"));
    EXPECT_EQ(options.snapshot->scale, 1);
    EXPECT_EQ(options.snapshot->width, 320);
    EXPECT_TRUE(options.snapshot->locale.empty());
}

TEST(Options, takeScaleLocaleAndWidthOfASnapshot) {
    const Options options =
        parsed({"--scale", "1.5", "--locale", "ar_EG.UTF-8", "--snapshot=x.png", "--width", "400"});
    ASSERT_TRUE(options.snapshot.has_value());
    EXPECT_EQ(options.snapshot->scale, 1.5);
    EXPECT_EQ(options.snapshot->locale, "ar_EG.UTF-8");
    EXPECT_EQ(options.snapshot->width, 400);
}

TEST(Options, sayVersionAndFullEditionsGroup) {
    EXPECT_TRUE(parsed({"--version"}).showsVersion);
    EXPECT_TRUE(program::versionText().startsWith(QStringLiteral("korvel-today ")));
    EXPECT_TRUE(program::versionText().contains(QStringLiteral(KORVEL_FULL_EDITION_GROUP)));
}

TEST(Options, nameEachOptionInTheHelp) {
    EXPECT_TRUE(parsed({"--help"}).showsHelp);
    for (const char* name : {"--containers", "--background", "--show", "--toggle", "--hide", "--quit",
                             "--snapshot", "--scale", "--locale", "--width", "--version", "--help"})
        EXPECT_TRUE(program::helpText().contains(QLatin1String(name))) << name;
}

TEST(Options, giveTheHelpAsJsonToo) {
    EXPECT_TRUE(parsed({"-h"}).showsHelp);
    EXPECT_TRUE(parsed({"--help", "--json"}).isJson);
    const QJsonObject help = QJsonDocument::fromJson(program::helpJson().toUtf8()).object();
    EXPECT_EQ(help.value(QStringLiteral("program")).toString(), QStringLiteral("korvel-today"));
    const QJsonArray options = help.value(QStringLiteral("options")).toArray();
    ASSERT_FALSE(options.isEmpty());
    const QJsonObject first = options.at(0).toObject();
    EXPECT_EQ(first.value(QStringLiteral("name")).toString(), QStringLiteral("--containers"));
    EXPECT_EQ(first.value(QStringLiteral("value")).toString(), QStringLiteral("DIR"));
    EXPECT_EQ(first.value(QStringLiteral("shortName")).toString(), QString());
    EXPECT_EQ(
        first.value(QStringLiteral("text")).toString(),
        QStringLiteral("the folder of the group containers (otherwise $KORVEL_GROUP_CONTAINERS, otherwise "
                       "group-containers in $XDG_DATA_HOME)"));
}

TEST_P(Misuses, areSaidInASentence) {
    const auto result = parseOptions(GetParam().arguments);
    ASSERT_TRUE(std::holds_alternative<UsageError>(result));
    EXPECT_EQ(std::get<UsageError>(result).message.toStdString(), GetParam().message);
}

TEST(Options, tellWhichArgumentIsAtFault) {
    const auto placeOf = [](const std::vector<std::string>& arguments) {
        return std::get<UsageError>(parseOptions(arguments)).place;
    };
    EXPECT_EQ(placeOf({"--containers", "a", "file"}), 3U);
    EXPECT_EQ(placeOf({"--containers", "a", "--scale", "2"}), 3U);
    EXPECT_EQ(placeOf({"--snapshot", "x", "--width=10"}), 3U);
    EXPECT_EQ(placeOf({"--show", "--containers", "a", "--hide"}), 4U);
    EXPECT_EQ(placeOf({"--quit", "--snapshot", "x"}), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    Options, Misuses,
    testing::Values(
        Misuse{{"--nonsense"}, "unknown option --nonsense"}, Misuse{{"file"}, "unknown option file"},
        Misuse{{"--containers"}, "--containers needs a value"},
        Misuse{{"--containers="}, "--containers needs a value"},
        Misuse{{"--version=1"}, "--version takes no value"},
        Misuse{{"--containers", "a", "--containers", "b"}, "--containers is given twice"},
        Misuse{{"--show", "--hide"}, "--show and --hide do not go together"},
        Misuse{{"--quit", "--snapshot", "x"}, "--quit does not go with --snapshot"},
        Misuse{{"--toggle=1"}, "--toggle takes no value"},
        Misuse{{"--extension", "3"}, "unknown option --extension"},
        Misuse{{"--json"}, "--json goes with --help"},
        Misuse{{"--scale", "2"}, "--scale goes with --snapshot"},
        Misuse{{"--locale", "de"}, "--locale goes with --snapshot"},
        Misuse{{"--width", "300"}, "--width goes with --snapshot"},
        Misuse{{"--snapshot", "x", "--scale", "0"}, "--scale takes a number from 0.5 to 8, not 0"},
        Misuse{{"--snapshot", "x", "--scale", "nan"}, "--scale takes a number from 0.5 to 8, not nan"},
        Misuse{{"--snapshot", "x", "--scale", "2x"}, "--scale takes a number from 0.5 to 8, not 2x"},
        Misuse{{"--snapshot", "x", "--width", "10"}, "--width takes a whole number from 200 to 4000, not 10"},
        Misuse{{"--snapshot", "x", "--width", "3e2"},
               "--width takes a whole number from 200 to 4000, not 3e2"}));
