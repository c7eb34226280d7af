#include "platform/plist/Reader.h"
#include "platform/plist/TypedJson.h"
#include "platform/plist/Writer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

// Lists of all three forms, sound and broken, with the value that the platform's reader gives for each and
// the bytes that its writer makes of that. A corpus is a folder with `manifest.tsv` (file, form, valid or
// invalid, root), `input/`, `expected/NAME.json` (typed JSON) and `written/NAME.xml`.
using namespace platform::plist;

namespace {

std::optional<std::string> contents(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// Dates that no calendar holds. The platform writes them as rubbish such as `24:60:-2147483648`; ours refuses
// to.
bool isOutsideTheCalendar(const std::string& xml) {
    return xml.find("<date>2030437302-06-07T24:60:-2147483648Z</date>") != std::string::npos;
}

struct Counts {
    std::size_t cases = 0;
    std::size_t values = 0;
    std::size_t written = 0;
    std::size_t rubbish = 0;
};

void checkAccepted(const std::filesystem::path& corpus, const std::string& name, const Value& value,
                   Counts& counts) {
    if (const auto expected = contents(corpus / "expected" / (name + ".json"))) {
        ++counts.values;
        EXPECT_EQ(typedJson(value).value_or("") + '\n', *expected);
    }
    const auto written = contents(corpus / "written" / (name + ".xml"));
    if (written && isOutsideTheCalendar(*written)) {
        ++counts.rubbish;
        EXPECT_EQ(writeXml(value), std::nullopt);
    } else if (written) {
        ++counts.written;
        EXPECT_EQ(writeXml(value), written);
    }
}

void checkCorpus(const std::filesystem::path& corpus) {
    std::ifstream manifest(corpus / "manifest.tsv");
    std::string line;
    ASSERT_TRUE(std::getline(manifest, line)) << corpus;
    Counts counts;
    while (std::getline(manifest, line)) {
        std::istringstream fields(line);
        std::string file;
        std::string form;
        std::string verdict;
        std::getline(fields, file, '\t');
        std::getline(fields, form, '\t');
        std::getline(fields, verdict, '\t');
        SCOPED_TRACE(file);
        const auto bytes = contents(corpus / file);
        ASSERT_TRUE(bytes);
        ++counts.cases;
        const ReadResult result = read(*bytes);
        EXPECT_EQ(std::holds_alternative<Value>(result), verdict == "valid");
        if (const Value* value = std::get_if<Value>(&result))
            checkAccepted(corpus, std::filesystem::path(file).filename(), *value, counts);
    }
    std::cout << corpus.string() << ": " << counts.cases << " cases, " << counts.values << " values, "
              << counts.written << " written, " << counts.rubbish << " dates outside the calendar refused\n";
    EXPECT_GT(counts.cases, 0U);
}

} // namespace

TEST(Corpus, ofOurOwnIsReadAndWrittenAsThePlatformDoes) {
    checkCorpus(std::filesystem::path(KORVEL_TEST_DATA) / "plist");
}

// A larger one, which the project may not contain, in the folder that PLIST_CORPUS names.
TEST(Corpus, givenByTheEnvironmentIsReadAndWrittenAsThePlatformDoes) {
    const char* const folder = std::getenv("PLIST_CORPUS");
    if (folder)
        checkCorpus(folder);
    else
        std::cout << "PLIST_CORPUS names no folder: 0 cases\n";
}
