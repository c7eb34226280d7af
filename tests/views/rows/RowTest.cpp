#include "views/rows/RowTest.h"

#include "platform/views/Fonts.h"
#include "platform/views/InterfaceFile.h"
#include "platform/views/TextLine.h"
#include "support/Application.h"
#include "views/rows/RowInterfaceFiles.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QScreen>

#include <cmath>

namespace rows {

void RecordingDelegate::todayTableViewCellWillExpanded(TodayTableCellView& cell) {
    opened.push_back(&cell);
    if (during)
        during();
}

void RecordingDelegate::todayTableViewCellClickedAction(TodayTransactionAction action) {
    actions.push_back(action);
    if (during)
        during();
}

const QString RowTest::pictureName = QStringLiteral("3F2504E0-4F89-11D3-9A0C");

RowTest::RowTest() {
    registerRowInterfaceFiles();
    writeIcon(QStringLiteral("groceries"), 24);
    writeIcon(pictureName, 100);
}

std::shared_ptr<TodayTableCellView> RowTest::makeRow(double width) {
    const auto views = platform::InterfaceFile::named(QStringLiteral("TodayTableCellView"))->instantiate();
    auto row = std::dynamic_pointer_cast<TodayTableCellView>(views.at(0));
    putOnStage(*row, width);
    return row;
}

std::shared_ptr<TodayTableCellView> RowTest::makeOpenRow(double width) {
    auto row = makeRow(width);
    row->configureForItem(item(), 60);
    row->cellClicked();
    finishSlide();
    return row;
}

std::shared_ptr<TodayAddTableCellView> RowTest::makeAddRow(double width) {
    const auto views = platform::InterfaceFile::named(QStringLiteral("TodayAddTableCellView"))->instantiate();
    auto row = std::dynamic_pointer_cast<TodayAddTableCellView>(views.at(0));
    putOnStage(*row, width);
    return row;
}

void RowTest::putOnStage(platform::View& row, double width) {
    stage.addSubview(row);
    row.setFrame(QRectF(20, 40, width, 50));
}

void RowTest::showStage() {
    support::showWindow(stage, 700, 140);
}

void RowTest::writeIcon(const QString& name, int side) const {
    QImage icon(side, side, QImage::Format_ARGB32);
    icon.fill(Qt::darkGreen);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(icon.save(&buffer, "PNG"));
    containers.write("-/icons/" + name.toStdString() + ".png", bytes.toStdString());
}

TodayTransaction::Values RowTest::rent() {
    TodayTransaction::Values values;
    values.name = QStringLiteral("Rent");
    values.date = now;
    values.imageName = QStringLiteral("groceries");
    values.amount = QStringLiteral("12.50");
    values.isExpense = true;
    return values;
}

TodayTransactionPtr RowTest::item(const TodayTransaction::Values& values) {
    return std::make_shared<TodayTransaction>(values);
}

TodayTransactionPtr RowTest::overdueItem() {
    auto values = rent();
    values.date = now - 1;
    return item(values);
}

double sizeOf(const QFont& font) {
    if (font.pixelSize() != -1)
        return font.pixelSize();
    return font.pointSizeF() * QGuiApplication::primaryScreen()->logicalDotsPerInchY() / 72;
}

QString textAsWideAs(double width, const QFont& font) {
    const auto letters = QStringLiteral("mnil");
    const auto widthOf = [&](const QString& text) { return platform::textWidth(text, font); };
    QString text;
    for (const QChar letter : letters)
        while (widthOf(text + letter) <= width)
            text += letter;
    // Replacing one of the last wide letters by others may come nearer.
    QString best = text;
    for (qsizetype kept = 0; kept < text.size(); ++kept)
        for (const QChar letter : letters) {
            QString other = text.left(kept);
            while (widthOf(other) < width)
                other += letter;
            if (std::abs(widthOf(other) - width) < std::abs(widthOf(best) - width))
                best = other;
        }
    return best;
}

QRect placeOn(const platform::View& holder, const platform::View& view) {
    return {view.mapTo(&holder, QPoint(0, 0)), view.size()};
}

std::vector<platform::View*> buttonsOf(const TodayTableCellView& row) {
    return row.rightButtonsPanel->subviews();
}

} // namespace rows
