// missing_glyphs [--strict]: shapes texts of the world's scripts as labels do and names each that has a
// character without a glyph although an installed font has one (--strict: whatever is installed). Exit status
// 1 if there is one. The locale of the environment decides which font is the general one.
#include "platform/views/Fonts.h"
#include "platform/views/TextLine.h"

#include <QFontDatabase>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QRawFont>
#include <QTextStream>

#include <algorithm>

namespace platform {

class TextLineTestAccess final {
public:
    static const QTextLayout& layoutOf(const TextLine& line) { return line.layout_; }
};

} // namespace platform

namespace {

const QStringList texts = {
    // Latin
    QStringLiteral("Rent and heating"),
    QStringLiteral("1,234,567.89 $ −12 € £5 ¥700"),
    QStringLiteral("Miete für März, 12. März 2026"),
    QStringLiteral("Tiền thuê nhà tháng ba"),
    // Greek
    QStringLiteral("Ενοίκιο Μαρτίου"),
    QStringLiteral("Ρεύμα & νερό 80,00 €"),
    // Cyrillic
    QStringLiteral("Аренда квартиры"),
    QStringLiteral("Комунальні послуги 1 200 ₴"),
    // Armenian
    QStringLiteral("Բնակվարձ"),
    QStringLiteral("Էլեկտրաէներգիա, 15 000 AMD"),
    // Georgian
    QStringLiteral("ბინის ქირა"),
    QStringLiteral("ელექტროენერგია 120 GEL"),
    // Hebrew
    QStringLiteral("שכר דירה"),
    QStringLiteral("חשמל ומים ₪ 350 (March)"),
    // Arabic
    QStringLiteral("إيجار الشقة"),
    QStringLiteral("کرایہ ١٢٣٤ Rent"),
    // Devanagari
    QStringLiteral("किराया"),
    QStringLiteral("बिजली का बिल ₹1,200.00 Bill"),
    // Bengali
    QStringLiteral("বাড়ি ভাড়া"),
    QStringLiteral("বিদ্যুৎ বিল ৳৫০০ Power"),
    // Tamil
    QStringLiteral("வாடகை"),
    QStringLiteral("மின்சாரக் கட்டணம் Rs 900"),
    // Thai
    QStringLiteral("ค่าเช่าห้อง"),
    QStringLiteral("ค่าน้ำ ฿250 Water"),
    // Burmese
    QStringLiteral("အိမ်ငှားခ"),
    QStringLiteral("မီးခ ၅၀၀၀ Kyat"),
    // Khmer
    QStringLiteral("ថ្លៃជួលផ្ទះ"),
    QStringLiteral("ថ្លៃទឹក ៛4000 Water"),
    // Ethiopic
    QStringLiteral("የቤት ኪራይ"),
    QStringLiteral("መብራት 300 Birr"),
};

bool hasMissingGlyph(const QString& text, const QFont& font) {
    const platform::TextLine line(text, font);
    const QList<QGlyphRun> runs = platform::TextLineTestAccess::layoutOf(line).glyphRuns();
    return runs.isEmpty() || std::any_of(runs.begin(), runs.end(),
                                         [](const QGlyphRun& run) { return run.glyphIndexes().contains(0); });
}

// Whether the installed fonts have all characters of a text between them.
bool isCovered(const QString& text) {
    const QStringList families = QFontDatabase::families();
    const QList<uint> characters = text.toUcs4();
    return std::all_of(characters.begin(), characters.end(), [&](uint character) {
        return std::any_of(families.begin(), families.end(), [&](const QString& family) {
            QFont font(family);
            font.setStyleStrategy(QFont::NoFontMerging);
            return QRawFont::fromFont(font).supportsCharacter(character);
        });
    });
}

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const bool isStrict = QCoreApplication::arguments().contains(QStringLiteral("--strict"));
    QTextStream out(stdout);
    int shaped = 0;
    int missing = 0;
    for (const QString& text : texts) {
        if (!isStrict && !isCovered(text))
            continue;
        for (const QFont& font : {platform::systemFont(13), platform::boldSystemFont(12.8)}) {
            ++shaped;
            if (!hasMissingGlyph(text, font))
                continue;
            ++missing;
            out << "a glyph is missing: " << text << " (" << font.family() << ")\n";
        }
    }
    out << shaped << " texts shaped, " << missing << " with a missing glyph\n";
    constexpr int atLeast = 16; // Latin, Greek and Cyrillic in both weights: no set of fonts has less
    return missing == 0 && shaped >= atLeast ? 0 : 1;
}
