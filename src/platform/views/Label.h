#pragma once

#include "platform/views/View.h"

#include <QColor>
#include <QFont>

namespace platform {

// One line of text.
class Label final : public View {
    Q_OBJECT
    Q_PROPERTY(QString stringValue READ stringValue WRITE setStringValue)
    Q_PROPERTY(Qt::Alignment alignment READ alignment WRITE setAlignment)

public:
    enum class LineBreakMode { Clipping, TruncatingTail };

    explicit Label(QWidget* parent = nullptr);

    [[nodiscard]] const QString& stringValue() const { return text_; }
    void setStringValue(const QString& text);
    [[nodiscard]] const QFont& labelFont() const { return font_; }
    void setLabelFont(const QFont& font);
    [[nodiscard]] const QColor& textColor() const { return color_; }
    void setTextColor(const QColor& color);
    [[nodiscard]] LineBreakMode lineBreakMode() const { return lineBreakMode_; }
    void setLineBreakMode(LineBreakMode mode);
    // Qt::AlignLeading and Qt::AlignTrailing follow the direction of reading.
    [[nodiscard]] Qt::Alignment alignment() const { return alignment_; }
    void setAlignment(Qt::Alignment alignment);

    // Gives the frame the size that the text takes, its origin kept.
    void sizeToFit();

    // The whole text, where the label has no room for it and shows that.
    [[nodiscard]] QString toolTipText() const override;
    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text_;
    QFont font_;
    QColor color_ = Qt::white;
    Qt::Alignment alignment_ = Qt::AlignLeading | Qt::AlignVCenter;
    LineBreakMode lineBreakMode_ = LineBreakMode::Clipping;
};

} // namespace platform
