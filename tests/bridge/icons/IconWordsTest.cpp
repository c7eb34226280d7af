#include "bridge/icons/IconWords.h"

#include "bridge/icons/FoldedText.h"
#include "bridge/icons/GlyphFiles.h"

#include <QRandomGenerator>
#include <QSet>
#include <QStringList>

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace bridge {
namespace {

std::string glyphOf(const IconWords& words, std::string_view text) {
    return std::string(words.glyphOf(text).value_or("none"));
}

TEST(IconWordsTest, comparesWholeWords) {
    const IconWords words("car\ten\tcar, old car\nhome\ten\thouse\n");
    EXPECT_EQ(glyphOf(words, "car"), "car");
    EXPECT_EQ(glyphOf(words, "My CAR!"), "car");
    EXPECT_EQ(glyphOf(words, "Expenses:Car:Wash"), "car");
    for (const char* other : {"cargo", "oscar", "ca r", "", " ", "c", "households"})
        EXPECT_EQ(glyphOf(words, other), "none") << other;
}

TEST(IconWordsTest, letsAWordBeginAndGoOnWhereAStarSaysSo) {
    const IconWords words("book\ten\tbook*\ntax\tde\t*steuer\ninsurance\tde\t*sicher*\n");
    EXPECT_EQ(glyphOf(words, "Bookshop"), "book");
    EXPECT_EQ(glyphOf(words, "Notebook"), "none");
    EXPECT_EQ(glyphOf(words, "Lohnsteuer"), "tax");
    EXPECT_EQ(glyphOf(words, "Lohnsteuerhilfe"), "none");
    EXPECT_EQ(glyphOf(words, "Autoversicherung"), "insurance");
}

TEST(IconWordsTest, findsSeveralWordsInARow) {
    const IconWords words("fuel\ten\tgas station*\n");
    EXPECT_EQ(glyphOf(words, "The gas-stations"), "fuel");
    EXPECT_EQ(glyphOf(words, "Gas at the station"), "none");
}

TEST(IconWordsTest, prefersTheGlyphThatStandsFirst) {
    const IconWords words("insurance\ten\tinsurance\ncar\ten\tcar\ncar\tde\tauto\n");
    EXPECT_EQ(glyphOf(words, "car insurance"), "insurance");
    EXPECT_EQ(glyphOf(words, "Auto + insurance"), "insurance");
    EXPECT_EQ(glyphOf(words, "auto"), "car");
}

TEST(IconWordsTest, prefersTheLastLevelOfACategory) {
    const IconWords words("game\ten\tleisure\nbook\ten\tbooks\nfuel\ten\tauto gas\n");
    EXPECT_EQ(glyphOf(words, "Leisure:Books"), "book");
    EXPECT_EQ(glyphOf(words, "Books : Leisure"), "game");
    EXPECT_EQ(glyphOf(words, "Books:Leisure:Other"), "game");
    EXPECT_EQ(glyphOf(words, "Books:"), "book");
    EXPECT_EQ(glyphOf(words, "::Books::"), "book");
    EXPECT_EQ(glyphOf(words, "Leisure, books"), "game");
    EXPECT_EQ(glyphOf(words, "Auto:Gas"), "fuel");
    EXPECT_EQ(glyphOf(words, "Auto:Gas:Leisure"), "game");
    EXPECT_EQ(glyphOf(words, ":::"), "none");
}

TEST(IconWordsTest, prefersTheFirstPartOfTheTableOnAnyLevel) {
    const IconWords words("insurance\ten\tinsurance\nloan\ten\tloan\n--\ncar\ten\tcar\n");
    EXPECT_EQ(glyphOf(words, "Insurance:Car"), "insurance");
    EXPECT_EQ(glyphOf(words, "Car:Insurance"), "insurance");
    EXPECT_EQ(glyphOf(words, "Insurance:Loan:Car"), "insurance");
    EXPECT_EQ(glyphOf(words, "Car:Loan:Car"), "loan");
    EXPECT_EQ(glyphOf(words, "House:Car:House"), "car");
}

TEST(IconWordsTest, readsNothingFromLinesWithoutWords) {
    const IconWords words("# car\ten\tcar\n\ncar\ncar\ten\ncar\ten\t\ncar\ten\t,*,  ,**,—*\nhome\ten\thouse");
    EXPECT_EQ(glyphOf(words, "car"), "none");
    EXPECT_EQ(glyphOf(words, "house"), "home");
    EXPECT_EQ(glyphOf(IconWords(""), "car"), "none");
}

// --- the table of the program

struct Line {
    std::string glyph;
    std::string language;
    QStringList words;
};

std::vector<Line> linesOfTable() {
    std::vector<Line> lines;
    const auto table = glyphWords();
    const auto texts = QString::fromUtf8(table.data(), static_cast<qsizetype>(table.size())).split(u'\n');
    for (const QString& text : texts)
        if (!text.isEmpty() && !text.startsWith(u'#') && text != QLatin1String("--")) {
            const QStringList fields = text.split(u'\t');
            EXPECT_EQ(fields.size(), 3) << text.toStdString();
            lines.push_back({fields.value(0).toStdString(), fields.value(1).toStdString(),
                             fields.value(2).split(QStringLiteral(", "))});
        }
    return lines;
}

const std::set<std::string> languages{"ar", "de", "en", "es", "fa", "fr", "he", "it", "ja", "ru"};

TEST(IconWordsTableTest, hasWordsOfEachLanguageForEachGlyphButTheNeutralOne) {
    std::map<std::string, std::set<std::string>> found;
    for (const Line& line : linesOfTable())
        EXPECT_TRUE(found[line.glyph].insert(line.language).second) << line.glyph << ' ' << line.language;
    std::map<std::string, std::set<std::string>> expected;
    for (const GlyphFile& file : glyphFiles())
        if (file.name != "planned")
            expected[std::string(file.name)] = languages;
    EXPECT_EQ(found, expected);
}

TEST(IconWordsTableTest, hasNoWordThatAnEarlierGlyphTakesAway) {
    const IconWords words(glyphWords());
    for (const Line& line : linesOfTable())
        for (QString word : line.words)
            EXPECT_EQ(glyphOf(words, word.remove(u'*').toStdString()), line.glyph)
                << word.toStdString() << " in " << line.language;
}

TEST(IconWordsTableTest, hasNoWordOfALetterNorOneTwiceInALine) {
    for (const Line& line : linesOfTable()) {
        EXPECT_EQ(QSet<QString>(line.words.begin(), line.words.end()).size(), line.words.size())
            << line.glyph << ' ' << line.language;
        for (const QString& word : line.words) {
            EXPECT_EQ(word, word.trimmed());
            EXPECT_GE(foldedText(word.toStdString()).size(), word.contains(u'*') ? 3 : 4)
                << word.toStdString();
        }
    }
}

struct Case {
    const char* text;
    const char* glyph;
};

// Categories as people and programs name them.
const Case cases[] = {
    // English
    {"Rent", "rent"},
    {"Home:Rent", "rent"},
    {"Expenses:Auto:Gas", "fuel"},
    {"Expenses:Utilities:Gas", "heating"},
    {"Insurance:Auto Insurance", "insurance"},
    {"Health:Health insurance", "insurance"},
    {"Auto:Repair and Maintenance", "repair"},
    {"Bills:Credit Card", "loan"},
    {"Utilities:Water & sewer", "water"},
    {"Utilities:Telephone", "phone"},
    {"Bills : Internet and phone", "internet"},
    {"Food:Dining out", "restaurant"},
    {"Food & Drink:Groceries", "groceries"},
    {"Kids:School fees", "education"},
    {"Leisure:Books", "book"},
    {"Leisure", "game"},
    {"Insurance:Car", "insurance"},
    {"Pet care:Food", "pet"},
    {"Utilities:Electric", "electricity"},
    {"Pets:Vet", "pet"},
    {"Tax refund", "tax"},
    {"Bank charges", "bank"},
    {"Public transport", "train"},
    {"Household", "home"},
    {"Handyman", "repair"},
    {"Training", "none"},
    {"Cargo", "none"},
    {"Catering", "none"},
    {"Taxi", "train"},
    {"Miscellaneous", "none"},
    // German
    {"Kfz-Versicherung", "insurance"},
    {"Autoversicherung", "insurance"},
    {"Kfz-Steuer", "tax"},
    {"Grundsteuer", "tax"},
    {"Kaltmiete", "rent"},
    {"Wohnen:Ökostrom", "electricity"},
    {"Stromabschlag", "electricity"},
    {"HANDYVERTRAG", "phone"},
    {"Rundfunkbeitrag", "tv"},
    {"Zahnarzt", "health"},
    {"Apotheke", "pharmacy"},
    {"Lebensmittel", "groceries"},
    {"Bücher", "book"},
    {"Buchung", "none"},
    {"Umbuchung", "transfer"},
    {"Ausflug", "none"},
    {"Sparkonto", "savings"},
    {"Autokredit", "loan"},
    {"Flüge", "flight"},
    // Spanish
    {"Alquiler", "rent"},
    {"Electricidad y luz", "electricity"},
    {"Tarjeta de crédito", "loan"},
    {"Telefonos moviles", "phone"},
    {"Seguro del coche", "insurance"},
    {"Guardería", "child"},
    {"Alimentación", "groceries"},
    {"Nómina", "salary"},
    // French
    {"Loyer", "rent"},
    {"Logement:Électricité", "electricity"},
    {"Facture d'eau", "water"},
    {"Assurance habitation", "insurance"},
    {"Impots sur le revenu", "tax"},
    {"Prêt immobilier", "loan"},
    {"Épargne", "savings"},
    {"Frais bancaires", "bank"},
    {"Livret A", "savings"},
    // Italian
    {"Affitto", "rent"},
    {"Bolletta della luce", "electricity"},
    {"Assicurazione auto", "insurance"},
    {"Mutuo casa", "loan"},
    {"Spesa", "groceries"},
    {"Spese varie", "none"},
    {"Abbonamento palestra", "gym"},
    // Russian
    {"Аренда квартиры", "rent"},
    {"Квартплата", "rent"},
    {"Электроэнергия", "electricity"},
    {"Страховка автомобиля", "insurance"},
    {"Заём", "loan"},
    {"Детский сад", "child"},
    {"Мобильная связь", "phone"},
    {"Продукты", "groceries"},
    {"Проезд на метро", "train"},
    {"Водка", "none"},
    // Arabic
    {"إيجار الشقة", "rent"},
    {"فاتورة الكهرباء", "electricity"},
    {"فاتورة المياه", "water"},
    {"الإنترنت", "internet"},
    {"تأمين السيارة", "insurance"},
    {"الراتب", "salary"},
    {"مصاريف المدرسة", "education"},
    // Persian
    {"اجاره خانه", "rent"},
    {"قبض برق", "electricity"},
    {"قبض گاز", "heating"},
    {"بیمه\u200Cنامه", "insurance"},
    {"قسط وام", "loan"},
    {"بيمه خودرو", "insurance"},
    {"هزینه\u200Cهای داروخانه", "pharmacy"},
    // Hebrew
    {"שכר דירה", "rent"},
    {"שכר לימוד", "education"},
    {"חשבון חשמל", "electricity"},
    {"ביטוח רכב", "insurance"},
    {"בית ספר", "education"},
    {"משכנתא", "loan"},
    {"מים", "water"},
    // Japanese
    {"家賃", "rent"},
    {"電気代", "electricity"},
    {"水道料金", "water"},
    {"ガス代", "heating"},
    {"ｶﾞｽ料金", "heating"},
    {"ガソリン", "fuel"},
    {"自動車保険", "insurance"},
    {"住宅ローン", "loan"},
    {"固定資産税", "tax"},
    {"携帯電話", "phone"},
    {"ジムの会費", "gym"},
    {"給料", "salary"},
    {"その他", "none"},
};

TEST(IconWordsTableTest, knowsTheCategoriesOfEachLanguage) {
    const IconWords words(glyphWords());
    for (const auto& [text, glyph] : cases)
        EXPECT_EQ(glyphOf(words, text), glyph) << text;
}

// --- odd texts

TEST(IconWordsTableTest, takesAnyText) {
    const IconWords words(glyphWords());
    EXPECT_EQ(glyphOf(words, std::string(1'000'000, 'x')), "none");
    EXPECT_EQ(glyphOf(words, std::string(1'000'000, ' ') + "rent"), "rent");
    EXPECT_EQ(glyphOf(words, "car" + std::string(100'000, ':')), "car");
    EXPECT_EQ(glyphOf(words, "\xFF\xC3\xED\xA0\x80 rent \xE2\x80"), "rent");
    EXPECT_EQ(glyphOf(words, "\U0001F3E0"), "none");
    EXPECT_EQ(glyphOf(words, "\u202Erent\u202C"), "rent");
    QRandomGenerator random(1);
    std::set<std::string> known{"none"};
    for (const GlyphFile& file : glyphFiles())
        known.insert(std::string(file.name));
    for (int round = 0; round < 10'000; ++round) {
        std::string text(random.bounded(40U), ' ');
        for (char& byte : text)
            byte = static_cast<char>(random.bounded(256));
        EXPECT_EQ(known.count(glyphOf(words, text)), 1U);
    }
}

} // namespace
} // namespace bridge
