#include "ctl/PrintBudget.h"
#include "ctl/TypedJson.h"
#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <vector>

// Property lists of all three forms, valid and broken ones, with the value that the platform's reader gives
// for each and the bytes that its writer makes of that value. A corpus is a folder with `manifest.tsv` (file,
// form, valid or invalid, root), `input/`, `expected/NAME.json` (typed JSON) and `written/NAME.xml`.
namespace ctl {
namespace {

namespace plist = platform::plist;
using std::filesystem::path;

struct List {
    path corpus;
    std::string file;
    std::string form;
    bool isValid;
};

using Lists = std::vector<List>;

// The list is empty if the folder has no manifest.
Lists listsOf(const path& corpus) {
    Lists lists;
    std::ifstream manifest(corpus / "manifest.tsv");
    std::string line;
    std::getline(manifest, line); // the names of the columns
    while (std::getline(manifest, line)) {
        std::istringstream fields(line);
        List list{corpus, {}, {}, false};
        std::string verdict;
        std::getline(fields, list.file, '\t');
        std::getline(fields, list.form, '\t');
        std::getline(fields, verdict, '\t');
        list.isValid = verdict == "valid";
        lists.push_back(list);
    }
    return lists;
}

// A part of a test's name, in which there are letters, digits and underscores only.
std::string nameFrom(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return text;
}

std::string kindOf(const List& list) {
    return nameFrom(list.form) + (list.isValid ? "_valid" : "_invalid");
}

std::optional<std::string> contents(const path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

// A date that no calendar has. The platform writes it as `24:60:-2147483648`, and our writer refuses it.
bool isOutsideTheCalendar(const std::string& xml) {
    return xml.find("<date>2030437302-06-07T24:60:-2147483648Z</date>") != std::string::npos;
}

std::string typedJson(const plist::Value& value) {
    std::ostringstream json;
    if (isPrintable(value))
        writeTypedJson(json, value);
    return json.str();
}

struct Counts {
    std::size_t lists = 0;
    std::size_t values = 0;
    std::size_t written = 0;
    std::size_t outsideTheCalendar = 0;
};

void checkValue(const List& list, const plist::Value& value, Counts& counts) {
    const std::string name = path(list.file).filename();
    if (const auto expected = contents(list.corpus / "expected" / (name + ".json"))) {
        ++counts.values;
        EXPECT_EQ(typedJson(value) + '\n', *expected);
    }
    const auto written = contents(list.corpus / "written" / (name + ".xml"));
    if (written && isOutsideTheCalendar(*written)) {
        ++counts.outsideTheCalendar;
        EXPECT_EQ(plist::writeXml(value), std::nullopt);
    } else if (written) {
        ++counts.written;
        EXPECT_EQ(plist::writeXml(value), written);
    }
}

void check(const List& list, Counts& counts) {
    SCOPED_TRACE(list.file);
    const auto bytes = contents(list.corpus / list.file);
    ASSERT_TRUE(bytes);
    ++counts.lists;
    const plist::ReadResult result = plist::read(*bytes);
    EXPECT_EQ(std::holds_alternative<plist::Value>(result), list.isValid);
    if (const auto* value = std::get_if<plist::Value>(&result))
        checkValue(list, *value, counts);
}

// Our own corpus: one test for each list, named after its file.
class OwnList : public testing::TestWithParam<List> {};

TEST_P(OwnList, isReadAndWrittenAsThePlatformDoes) {
    Counts counts;
    check(GetParam(), counts);
}

// Shown by GoogleTest where it lists its tests.
void PrintTo(const List& list, std::ostream* out) {
    *out << list.file;
}

std::string nameOfOwn(const testing::TestParamInfo<List>& info) {
    const std::string file = path(info.param.file).stem(); // such as 1136_xml_empty_dict
    return kindOf(info.param) + "__" + nameFrom(file.substr(file.find('_') + 1));
}

INSTANTIATE_TEST_SUITE_P(Corpus, OwnList, testing::ValuesIn(listsOf(path(KORVEL_TEST_DATA) / "plist")),
                         nameOfOwn);

TEST(OwnCorpus, hasListsOfEveryFormAndVerdict) {
    std::map<std::string, int> kinds;
    for (const List& list : listsOf(path(KORVEL_TEST_DATA) / "plist"))
        ++kinds[kindOf(list)];
    for (const char* form : {"xml", "binary", "openstep_strings", "nul_interleaved_openstep_strings"})
        for (const char* verdict : {"_valid", "_invalid"})
            EXPECT_GT(kinds[form + std::string(verdict)], 0) << form << verdict;
}

// A larger corpus, which the project may not contain, in the folder that PLIST_CORPUS names: one test for
// each form and verdict. Without that variable there are no such tests; where the folder holds no corpus,
// there is one that fails.
struct Group {
    std::string name;
    Lists lists;
};

std::vector<Group> groupsOfGivenCorpus() {
    const char* const corpus = std::getenv("PLIST_CORPUS");
    if (!corpus)
        return {};
    std::map<std::string, Lists> lists;
    for (const List& list : listsOf(corpus))
        lists[kindOf(list)].push_back(list);
    std::vector<Group> groups;
    for (const auto& [kind, ofKind] : lists)
        groups.push_back({kind, ofKind});
    if (groups.empty())
        groups.push_back({"found", {}});
    return groups;
}

void PrintTo(const Group& group, std::ostream* out) {
    *out << group.lists.size() << " lists";
}

class GivenCorpus : public testing::TestWithParam<Group> {
protected:
    static void TearDownTestSuite() {
        std::cout << total.lists << " lists, " << total.values << " values, " << total.written
                  << " written files, " << total.outsideTheCalendar << " dates outside the calendar\n";
    }

    static inline Counts total;
};

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(GivenCorpus);

TEST_P(GivenCorpus, isReadAndWrittenAsThePlatformDoes) {
    ASSERT_FALSE(GetParam().lists.empty()) << "no corpus in PLIST_CORPUS=" << std::getenv("PLIST_CORPUS");
    for (const List& list : GetParam().lists)
        check(list, total);
}

INSTANTIATE_TEST_SUITE_P(PlistCorpus, GivenCorpus, testing::ValuesIn(groupsOfGivenCorpus()),
                         [](const auto& group) { return group.param.name; });

} // namespace
} // namespace ctl
