#include "platform/views/TextLine.h"

#include "platform/views/Fonts.h"

#include <QCache>
#include <QCoreApplication>
#include <QPainter>

#include <algorithm>

namespace platform {

namespace {

// All that a tall screen shows at once, and some more.
constexpr qsizetype mostKept = 128;
constexpr qsizetype longestKept = 100;

struct LineKey {
    QString text;
    QFont font;

    bool operator==(const LineKey&) const = default;
};

size_t qHash(const LineKey& key, size_t seed = 0) {
    return qHashMulti(seed, key.text, key.font);
}

using KeptLines = QCache<LineKey, std::shared_ptr<const TextLine>>;

KeptLines& keptLines() {
    static KeptLines lines(mostKept);
    return lines;
}

} // namespace

TextLine::TextLine(const QString& text, const QFont& font) {
    const QString line = singleLine(text);
    const ExactFont exact = exactFont(font, line);
    scale_ = exact.scale;
    layout_.setText(line);
    layout_.setFont(exact.font);
    layout_.setCacheEnabled(true);
    layout_.beginLayout();
    layout_.createLine();
    layout_.endLayout();
    const QTextLine only = layout_.lineAt(0);
    width_ = only.isValid() ? only.horizontalAdvance() * scale_ : 0;
}

std::shared_ptr<const TextLine> TextLine::of(const QString& text, const QFont& font) {
    if (text.size() > longestKept)
        return std::make_shared<TextLine>(text, font);
    KeptLines& kept = keptLines();
    const LineKey key{text, font};
    if (const auto* found = kept.object(key))
        return *found;
    const auto line = std::make_shared<TextLine>(text, font);
    if (kept.isEmpty())
        qAddPostRoutine([] { keptLines().clear(); }); // fonts end with the application
    kept.insert(key, new std::shared_ptr<const TextLine>(line));
    return line;
}

void TextLine::draw(QPainter& painter, const QRectF& rect, Qt::Alignment side) const {
    const QTextLine line = layout_.lineAt(0);
    if (!line.isValid())
        return;
    painter.save();
    painter.scale(scale_, scale_);
    const QRectF room(rect.topLeft() / scale_, rect.size() / scale_);
    const double spare = room.width() - line.horizontalAdvance();
    const double indent = side & Qt::AlignRight ? spare : side & Qt::AlignHCenter ? spare / 2 : 0;
    const double height = line.ascent() + line.descent(); // its height() is a whole number
    line.draw(&painter, room.topLeft() + QPointF(indent, (room.height() - height) / 2));
    painter.restore();
}

double textWidth(const QString& text, const QFont& font) {
    return TextLine::of(text, font)->width();
}

QString singleLine(const QString& text) {
    const auto breaks = [](QChar c) {
        return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QLatin1Char('\t') ||
               c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
    };
    if (std::none_of(text.begin(), text.end(), breaks))
        return text;
    QString line = text;
    line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    std::replace_if(line.begin(), line.end(), breaks, QLatin1Char(' '));
    return line;
}

} // namespace platform
