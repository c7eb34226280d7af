#include "ctl/check/CheckTest.h"
#include "ctl/check/PngFile.h"
#include "exchange/TodayWidgetLogic.h"

#include <QImageReader>

#include <gmock/gmock.h>

#include <csignal>
#include <functional>
#include <png.h>
#include <utility>
#include <vector>

namespace ctl {
namespace {

namespace plist = platform::plist;

using exchange::recordOf;
using exchange::tenthOfMarch;
using exchange::with;
using plist::Value;
using testing::ElementsAre;

const std::string pictureName = "3F2504E0-4F89-11D3-9A0C"; // 23 UTF-16 code units

class IconsCheckTest : public CheckTest {
protected:
    void writeRecordWithIcon(const std::string& name, double date = tenthOfMarch) const {
        writeFeed({Value(recordOf("p", tenthOfMarch)), with(recordOf("q", date), "image", Value(name))});
    }
    // Whether the widget loads the icon; it ends the process where it does not load a glyph.
    static void load(const std::string& name) {
        static_cast<void>(TodayWidgetLogic::imageByName(QString::fromStdString(name), QRectF(0, 0, 40, 40)));
    }
};

struct Row {
    const char* name;
    std::function<std::string(const std::string& whole)> bytes; // made of a whole picture's
    const char* finding;                                        // empty where the icon is sound
};

class GlyphAgreementTest : public IconsCheckTest, public testing::WithParamInterface<Row> {};

TEST_P(GlyphAgreementTest, saysThatAGlyphEndsThePanelWhereItDoes) {
    writeRecordWithIcon("glyph");
    writeIcon("glyph", GetParam().bytes(pngBytes(40, 40)));
    const std::string finding = GetParam().finding;
    if (finding.empty()) {
        EXPECT_THAT(checked(), ElementsAre("0"));
        load("glyph");
    } else {
        EXPECT_THAT(checked(), ElementsAre("1", finding + " notifications.xml 2 image"));
        EXPECT_EXIT(load("glyph"), testing::KilledBySignal(SIGABRT), "^$");
    }
}

std::function<std::string(const std::string&)> firstBytes(std::size_t count) {
    return [count](const std::string& whole) { return whole.substr(0, count); };
}

std::function<std::string(const std::string&)> bytes(const std::string& text) {
    return [text](const std::string&) { return text; };
}

std::string withAWrongSum(std::string whole) {
    whole[30] = static_cast<char>(whole[30] ^ 1); // of the header's check sum
    return whole;
}

std::string cutShort(const std::string& whole) {
    return whole.substr(0, whole.size() - 20);
}

std::string asLargeAsAllowed(const std::string&) {
    return CheckTest::pngBytes(4096, KORVEL_IMAGE_LIMIT * 64);
}

std::string tooLarge(const std::string&) {
    return CheckTest::pngBytes(4096, KORVEL_IMAGE_LIMIT * 64 + 1);
}

INSTANTIATE_TEST_SUITE_P(Glyphs, GlyphAgreementTest,
                         testing::Values(Row{"Whole", firstBytes(std::string::npos), ""},
                                         Row{"CutShort", cutShort, "ends glyphBroken"},
                                         Row{"HeaderCutShort", firstBytes(16), "ends glyphBroken"},
                                         Row{"SignatureAlone", firstBytes(8), "ends glyphBroken"},
                                         Row{"Empty", bytes(""), "ends glyphBroken"},
                                         Row{"Text", bytes("no picture"), "ends glyphBroken"},
                                         Row{"WrongSum", withAWrongSum, "ends glyphBroken"},
                                         Row{"AsLargeAsAllowed", asLargeAsAllowed, ""},
                                         Row{"TooLarge", tooLarge, "ends glyphTooLarge"}),
                         [](const auto& row) { return row.param.name; });

TEST_F(IconsCheckTest, namesAMissingGlyph) {
    writeRecordWithIcon("missing");
    EXPECT_THAT(checked(), ElementsAre("1", "ends glyphMissing notifications.xml 2 image"));
    EXPECT_EXIT(load("missing"), testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(IconsCheckTest, namesAGlyphThatIsAFolder) {
    writeRecordWithIcon("folder");
    makeFolder("-/icons/folder.png");
    EXPECT_THAT(checked(), ElementsAre("1", "ends glyphMissing notifications.xml 2 image"));
    EXPECT_EXIT(load("folder"), testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(IconsCheckTest, namesAGlyphThatItMayNotRead) {
    setMode("-/icons/house.png", 0);
    EXPECT_THAT(checkedByAUser(), ElementsAre("1", "ends glyphMissing notifications.xml 1 image"));
}

void append(png_structp png, png_bytep bytes, size_t length) {
    static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<const char*>(bytes), length);
}

// Nine by nine pixels of a kind.
std::string pngOfKind(int bitDepth, int colorType, int interlace) {
    std::string bytes;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &bytes, append, nullptr);
    png_set_IHDR(png, info, 9, 9, bitDepth, colorType, interlace, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    const png_color palette[2] = {};
    if (colorType == PNG_COLOR_TYPE_PALETTE)
        png_set_PLTE(png, info, palette, 2);
    png_write_info(png, info);
    const std::vector<png_byte> row(png_get_rowbytes(png, info));
    const int passes = png_set_interlace_handling(png);
    for (int written = 0; written < 9 * passes; ++written)
        png_write_row(png, row.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return bytes;
}

TEST_F(IconsCheckTest, decodesEveryKindOfPng) {
    for (const int interlace : {PNG_INTERLACE_NONE, PNG_INTERLACE_ADAM7})
        for (const auto& [bitDepth, colorType] :
             {std::pair(1, PNG_COLOR_TYPE_GRAY), std::pair(2, PNG_COLOR_TYPE_PALETTE),
              std::pair(8, PNG_COLOR_TYPE_GRAY_ALPHA), std::pair(8, PNG_COLOR_TYPE_RGB),
              std::pair(16, PNG_COLOR_TYPE_RGB_ALPHA)}) {
            const std::string whole = pngOfKind(bitDepth, colorType, interlace);
            EXPECT_EQ(pngState(whole), PngState::Whole) << bitDepth << ' ' << colorType << ' ' << interlace;
            EXPECT_EQ(pngState(whole.substr(0, whole.size() - 18)), PngState::Broken);
        }
}

TEST_F(IconsCheckTest, namesAPictureThatIsNoPng) {
    writeRecordWithIcon("photo");
    writeIcon("photo", "P1\n1 1\n1\n");
    EXPECT_THAT(checked(), ElementsAre("0", "degrades glyphNoPng notifications.xml 2 image"));
    load("photo");
}

TEST_F(IconsCheckTest, namesAGlyphOfARecordThatIsNotShownYet) {
    writeRecordWithIcon("missing", tenthOfMarch + 5 * exchange::day);
    EXPECT_THAT(checked(), ElementsAre("0", "degrades glyphNotReady notifications.xml 2 image"));
    clock.set(tenthOfMarch + 5 * exchange::day);
    EXPECT_THAT(checked(), ElementsAre("1", "ends glyphMissing notifications.xml 2 image"));
}

TEST_F(IconsCheckTest, namesAPictureThatIsNotShown) {
    writeRecordWithIcon(pictureName);
    const std::string finding = "degrades pictureNotShown notifications.xml 2 image";
    EXPECT_THAT(checked(), ElementsAre("0", finding));
    writeIcon(pictureName, "no picture");
    EXPECT_THAT(checked(), ElementsAre("0", finding));
    load(pictureName);
    writeIcon(pictureName, pngBytes(8, 8));
    EXPECT_THAT(checked(), ElementsAre("0"));
}

// The name's length is counted in UTF-16 code units.
TEST_F(IconsCheckTest, tellsAGlyphFromAPictureByTheLengthOfTheName) {
    const std::string pair = "\xF0\x9F\x8F\xA0"; // two units
    writeRecordWithIcon(std::string(20, 'a') + pair);
    EXPECT_THAT(checked(), ElementsAre("1", "ends glyphMissing notifications.xml 2 image"));
    writeRecordWithIcon(std::string(21, 'a') + pair);
    EXPECT_THAT(checked(), ElementsAre("0", "degrades pictureNotShown notifications.xml 2 image"));
}

TEST_F(IconsCheckTest, looksForTheIconsOfTheAccount) {
    setAccountKey("anna");
    EXPECT_THAT(checked(), ElementsAre("1", "ends glyphMissing notifications.xml 1 image"));
    write("anna/icons/house.png", pngBytes(2, 2));
    EXPECT_THAT(checked(), ElementsAre("0"));
}

TEST_F(IconsCheckTest, knowsTheLimitOfTheToolkit) {
    EXPECT_EQ(KORVEL_IMAGE_LIMIT, QImageReader::allocationLimit());
    const support::EnvironmentVariable limit("QT_IMAGEIO_MAXALLOC", "1");
    EXPECT_EQ(pngState(pngBytes(512, 512)), PngState::Whole);
    EXPECT_EQ(pngState(pngBytes(512, 513)), PngState::TooLarge);
}

} // namespace
} // namespace ctl
