#include "ctl/PlistCommand.h"

#include "ctl/CtlTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

using ctl::PlistFormat;

namespace {

const std::string lists = KORVEL_TEST_DATA "/plist/";

struct Answer {
    int status = -1;
    std::string out;
    std::string err;
};

Answer show(const std::string& path, PlistFormat format = PlistFormat::Json, const std::string& input = "",
            bool isTerminal = false) {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    ctl::Streams streams{in, out, err, isTerminal};
    const int status = ctl::showPlist(path, format, streams);
    return {status, out.str(), err.str()};
}

std::string contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

TEST(PlistCommand, printsEveryKindAsTypedJson) {
    const Answer answer =
        show("-", PlistFormat::Json,
             "<plist><dict><key>d</key><date>2001-01-01T00:00:01Z</date><key>b</key><true/><key>a</key>"
             "<array><integer>-5</integer><real>0.1</real><real>nan</real><string>\"\\\xC3\xA9\n</string>"
             "<data>AP8=</data></array><key>u</key><dict><key>CF$UID</key><integer>3</integer></dict>"
             "</dict></plist>");
    EXPECT_EQ(answer.status, ctl::Done);
    EXPECT_EQ(
        answer.out,
        R"({"dict":{"a":[{"int":"-5"},{"real":"0.10000000000000001"},{"real":"nan"},"\"\\\u00e9\u000a",)"
        R"({"data":"00ff"}],"b":true,"d":{"date":"1"},"u":{"uid":3}}})"
        "\n");
    EXPECT_EQ(answer.err, "");
}

TEST(PlistCommand, printsTheXmlThatTheWriterGives) {
    const Answer answer = show(lists + "input/1283_old_array_mixed.plist", PlistFormat::Xml);
    EXPECT_EQ(answer.status, ctl::Done);
    EXPECT_EQ(answer.out, contents(lists + "written/1283_old_array_mixed.plist.xml"));
}

TEST(PlistCommand, printsXmlOnATerminalThatIsReadAsTheSameValue) {
    const std::string list = "{\"k\\U001b\" = \"a\\n\\t\\r\\U0001\\U007f\\U009b\\U202e\\U2028\\Ufffe<&\"; }";
    const Answer terminal = show("-", PlistFormat::Xml, list, true);
    EXPECT_THAT(terminal.out, testing::HasSubstr("<key>k&#x001b;</key>"));
    EXPECT_THAT(terminal.out,
                testing::HasSubstr("a\n\t&#x000d;&#x0001;&#x007f;&#x009b;&#x202e;&#x2028;\uFFFE&lt;&amp;<"));
    const Answer exact = show("-", PlistFormat::Xml, list);
    EXPECT_NE(exact.out, terminal.out);
    EXPECT_EQ(show("-", PlistFormat::Json, terminal.out).out, show("-", PlistFormat::Json, exact.out).out);
}

TEST(PlistCommand, namesTheLineOfAFaultInAText) {
    const Answer answer = show("-", PlistFormat::Json, "<plist>\n<array>\n<real>x</real></array></plist>");
    EXPECT_EQ(answer.status, ctl::Failed);
    EXPECT_EQ(answer.out, "");
    EXPECT_THAT(answer.err, testing::HasSubstr("-:3: A real is not a number"));
    EXPECT_EQ(std::count(answer.err.begin(), answer.err.end(), '\n'), 1);
}

TEST(PlistCommand, namesTheOffsetOfAFaultInABinaryList) {
    const std::string path = lists + "input/1314_bin_utf8_type7.bplist";
    const Answer answer = show(path);
    EXPECT_EQ(answer.status, ctl::Failed);
    EXPECT_THAT(answer.err, testing::HasSubstr(path + ", offset 8: An object is of an unknown kind"));
}

TEST(PlistCommand, failsForAFileThatCannotBeRead) {
    const std::string missing = lists + "no such file";
    EXPECT_EQ(show(missing).status, ctl::Failed);
    EXPECT_THAT(show(missing).err, testing::HasSubstr(missing));
    EXPECT_EQ(show(lists).status, ctl::Failed);
    EXPECT_THAT(show(lists).err, testing::HasSubstr("directory"));
}

TEST(PlistCommand, failsForASetThatHasNoXmlForm) {
    const Answer answer = show(lists + "input/1325_bin_set.bplist", PlistFormat::Xml);
    EXPECT_EQ(answer.status, ctl::Failed);
    EXPECT_EQ(answer.out, "");
    EXPECT_THAT(answer.err, testing::HasSubstr("The list has no XML form"));
    EXPECT_EQ(show(lists + "input/1325_bin_set.bplist").out, "{\"set\":1}\n");
}

TEST(PlistCommand, failsForAListThatIsTooLargeWhenWrittenOut) {
    for (const PlistFormat format : {PlistFormat::Json, PlistFormat::Xml}) {
        const Answer answer = show(lists + "input/1383_bin_bomb_100.bplist", format);
        EXPECT_EQ(answer.status, ctl::Failed);
        EXPECT_EQ(answer.out, "");
    }
}

class PlistCommandLine : public ctl::CtlTest {};

TEST_F(PlistCommandLine, printsTypedJsonUnlessAskedForXml) {
    const std::string file = container + "/list";
    write("list", "(a)");
    EXPECT_EQ(run({"plist", file}), ctl::Done);
    const std::string json = out;
    EXPECT_EQ(run({"plist", "--to", "json", file}), ctl::Done);
    EXPECT_EQ(out, json);
    EXPECT_EQ(run({"plist", file, "--to=xml"}), ctl::Done);
    EXPECT_THAT(out, testing::HasSubstr("<string>a</string>"));
}

TEST_F(PlistCommandLine, namesTheFileThatItRefuses) {
    const std::string file = container + "/broken";
    write("broken", "<plist><array>");
    EXPECT_EQ(run({"plist", file}), ctl::Failed);
    EXPECT_THAT(err, testing::HasSubstr(file));
}
