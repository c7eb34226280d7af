#include "host/QuietTable.h"

#include <QHeaderView>
#include <QPainter>

namespace host {

namespace {

constexpr int rowPadding = 10;

} // namespace

QuietTable::QuietTable(const QString& whileEmpty, QWidget* parent)
    : QTableView(parent)
    , whileEmpty_(whileEmpty) {
    setShowGrid(false);
    setWordWrap(false);
    setAlternatingRowColors(true);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + rowPadding);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
}

void QuietTable::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (!model() || model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(rowPadding, rowPadding, -rowPadding, -rowPadding),
                     Qt::AlignCenter | Qt::TextWordWrap, whileEmpty_);
}

} // namespace host
