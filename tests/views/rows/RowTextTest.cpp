#include "platform/views/Fonts.h"
#include "platform/views/TextLine.h"
#include "support/Application.h"
#include "views/rows/RowTest.h"

#include <QApplication>

#include <ctime>

namespace rows {
namespace {

constexpr qsizetype megabyte = 1 << 20;
constexpr double bound = 10; // seconds of processor time, far more than any machine needs

// The processor time of this process, which does not depend on other processes.
double processorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Texts that a host may write.
class RowTextTest : public RowTest {
protected:
    [[nodiscard]] QImage paintedWith(const QString& name, const QString& amount) {
        const auto row = makeRow();
        auto values = rent();
        values.name = name;
        values.amount = amount;
        row->configureForItem(item(values), platform::textWidth(amount, platform::boldSystemFont(16)));
        EXPECT_EQ(row->titleLabel->stringValue(), name);
        EXPECT_EQ(row->sumLabel->stringValue(), amount);
        return support::painted(*row);
    }
    [[nodiscard]] QImage paintedWithName(const QString& name) {
        return paintedWith(name, QStringLiteral("12.50"));
    }
    // The picture of the title's frame.
    [[nodiscard]] static QRect inkOfTitle(const QImage& row) {
        return support::inkOf(row.copy(50, 0, 189, 27));
    }
};

TEST_F(RowTextTest, aNameOfAMegabyteIsCutAtItsTailInTime) {
    const double start = processorSeconds();
    const QImage row = paintedWithName(QString(megabyte, QLatin1Char('m')));
    EXPECT_LT(processorSeconds() - start, bound);
    const QRect ink = inkOfTitle(row);
    EXPECT_GT(ink.right(), 165);
    EXPECT_LT(ink.right(), 189);
}

TEST_F(RowTextTest, aNameOfAMegabyteWithoutSpacesOrLettersIsShownInTime) {
    const double start = processorSeconds();
    const QImage spaces = paintedWithName(QString(megabyte, QLatin1Char(' ')));
    const QImage marks = paintedWithName(QString(megabyte, QChar(0x0301))); // combining marks
    EXPECT_LT(processorSeconds() - start, bound);
    EXPECT_FALSE(inkOfTitle(spaces).isNull()); // the ellipsis
    EXPECT_LT(inkOfTitle(spaces).right(), 189);
    EXPECT_EQ(inkOfTitle(marks) | QRect(0, 0, 189, 27), QRect(0, 0, 189, 27));
}

TEST_F(RowTextTest, anAmountOfAMegabyteShrinksInTime) {
    const double start = processorSeconds();
    const auto row = makeRow();
    auto values = rent();
    values.amount = QString(megabyte, QLatin1Char('7'));
    const double width = platform::textWidth(values.amount, platform::boldSystemFont(16));
    row->configureForItem(item(values), width);
    const QImage image = support::painted(*row);
    EXPECT_LT(processorSeconds() - start, bound);
    EXPECT_GT(width, 1e6);
    EXPECT_EQ(row->sumWidthLayoutConstraint->constant(), 142);
    EXPECT_LT(sizeOf(row->sumLabel->labelFont()), 0.1);
    EXPECT_GT(sizeOf(row->sumLabel->labelFont()), 0);
    EXPECT_FALSE(support::inkOf(image).isNull());
}

TEST_F(RowTextTest, lineBreaksInANameAreSpaces) {
    const QImage spaces = paintedWithName(QStringLiteral("Rent and heating now"));
    EXPECT_EQ(paintedWithName(QStringLiteral("Rent\nand\r\nheating\tnow")), spaces);
    EXPECT_EQ(paintedWithName(QStringLiteral("Rent\u2028and\u2029heating\rnow")), spaces);
}

TEST_F(RowTextTest, lineBreaksInAnAmountAreSpaces) {
    const auto name = QStringLiteral("Rent");
    EXPECT_EQ(paintedWith(name, QStringLiteral("12\n50")), paintedWith(name, QStringLiteral("12 50")));
}

TEST_F(RowTextTest, anEmptyNameLeavesItsPlaceEmpty) {
    EXPECT_TRUE(inkOfTitle(paintedWithName(QString())).isNull());
    EXPECT_FALSE(inkOfTitle(paintedWithName(QStringLiteral("Rent"))).isNull());
}

TEST_F(RowTextTest, anEmptyAmountLeavesTheBadgeEmpty) {
    const auto row = makeRow();
    auto values = rent();
    values.amount = QString();
    row->configureForItem(item(values), 0);
    EXPECT_EQ(sizeOf(row->sumLabel->labelFont()), 16);
    EXPECT_FALSE(row->sumBackgroundView->isHidden());
    const QImage badge = support::painted(*row).copy(257, 12, 52, 26);
    QImage plain(badge.size(), badge.format());
    plain.fill(row->sumBackgroundExpenseColor);
    EXPECT_EQ(badge, plain);
}

TEST_F(RowTextTest, anArabicNameStandsAtTheLeadingEdge) {
    const auto name = QStringLiteral("إيجار");
    const QRect leftToRight = inkOfTitle(paintedWithName(name));
    EXPECT_FALSE(leftToRight.isNull());
    EXPECT_LT(leftToRight.left(), 5);
    QApplication::setLayoutDirection(Qt::RightToLeft);
    const QImage row = paintedWithName(name);
    const QRect title = support::inkOf(row.copy(81, 0, 189, 27));
    EXPECT_FALSE(title.isNull());
    EXPECT_GT(title.right(), 183);
}

TEST_F(RowTextTest, aNameOfEmojiAndMarksIsShown) {
    EXPECT_FALSE(inkOfTitle(paintedWithName(QStringLiteral("\U0001F3E0 \u00c9cole"))).isNull());
}

TEST_F(RowTextTest, aNameWithANulByteIsKept) {
    QString name = QStringLiteral("Re");
    name += QChar(0);
    name += QStringLiteral("nt");
    EXPECT_FALSE(inkOfTitle(paintedWithName(name)).isNull());
}

TEST_F(RowTextTest, aHalfSurrogateIsNoObstacle) {
    QString name = QStringLiteral("Rent ");
    name += QChar(0xD83C);
    EXPECT_FALSE(inkOfTitle(paintedWithName(name)).isNull());
}

} // namespace
} // namespace rows
