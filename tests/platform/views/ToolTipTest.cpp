#include "platform/views/ToolTip.h"

#include "platform/views/Button.h"
#include "platform/views/Fonts.h"
#include "platform/views/Label.h"
#include "support/Application.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QHelpEvent>
#include <QImage>
#include <QLabel>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>
#include <cmath>

using platform::Button;
using platform::Label;
using platform::View;

namespace {

// Contrast of the Web Content Accessibility Guidelines, 1 to 21.
double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const double first = luminance(one), second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

class ToolTips : public testing::Test {
protected:
    ToolTips() {
        window.addSubview(label);
        label.setFrame(QRectF(0, 0, 100, 20));
        label.setLabelFont(platform::systemFont(15));
        label.setLineBreakMode(Label::LineBreakMode::TruncatingTail);
        window.addSubview(button);
        button.setFrame(QRectF(0, 30, 50, 50));
        button.setHelpTextKey("InfoButtonHelp");
        support::showWindow(window, 200, 100);
    }
    ~ToolTips() override { delete tip(); } // it would hide only after a while

    // The mouse has come to rest on a view, as the toolkit tells it. Whether the view takes that for its own.
    static bool rest(View& view) {
        QHelpEvent event(QEvent::ToolTip, {5, 5}, view.mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&view, &event);
        return event.isAccepted();
    }

    [[nodiscard]] static QLabel* tip() {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->inherits("QTipLabel"))
                return static_cast<QLabel*>(widget);
        return nullptr;
    }
    // What the tooltip shows, without markup.
    [[nodiscard]] static QString shown() {
        const QString text = tip() ? tip()->text() : QString();
        if (!Qt::mightBeRichText(text))
            return text;
        QTextDocument document;
        document.setHtml(text);
        return document.toPlainText();
    }

    View window;
    Label label;
    Button button;
};

} // namespace

TEST_F(ToolTips, tellAnElidedTextInFull) {
    label.setStringValue(QStringLiteral("Riverside Water Works, yearly settlement"));
    EXPECT_TRUE(rest(label));
    EXPECT_EQ(shown(), label.stringValue());
}

TEST_F(ToolTips, sayNothingOfATextThatIsShownInFull) {
    label.setStringValue(QStringLiteral("Rent"));
    EXPECT_FALSE(rest(label));
    label.setStringValue(QStringLiteral("Riverside Water Works, yearly settlement"));
    label.setLineBreakMode(Label::LineBreakMode::Clipping);
    EXPECT_FALSE(rest(label));
    EXPECT_EQ(tip(), nullptr);
}

TEST_F(ToolTips, tellWhatAButtonDoes) {
    EXPECT_TRUE(rest(button));
    EXPECT_EQ(shown(), button.accessibleTraits().name);
}

TEST_F(ToolTips, sayNothingOfADisabledButton) {
    button.setEnabled(false);
    rest(button);
    EXPECT_EQ(tip(), nullptr);
}

TEST_F(ToolTips, takeNothingForMarkup) {
    for (const char* text : {"<b>Rent</b> & more, with a name of many words", "a < b", "<img src='x'>",
                             "&amp; with a name that is longer than the label is wide"}) {
        platform::showToolTip({}, QString::fromLatin1(text), window);
        EXPECT_EQ(shown().toStdString(), text);
    }
}

TEST_F(ToolTips, wrapALongText) {
    platform::showToolTip({}, QStringLiteral("settlement ").repeated(80), window);
    EXPECT_LT(tip()->width(), 800);
    EXPECT_GT(tip()->height(), 50);
}

TEST_F(ToolTips, cutATextWithoutEnd) {
    platform::showToolTip({}, QString(1000000, QLatin1Char('x')), window);
    EXPECT_EQ(shown().size(), 1001);
    EXPECT_TRUE(shown().endsWith(QChar(0x2026)));
}

TEST_F(ToolTips, areDarkAndLegible) {
    platform::showToolTip({}, QStringLiteral("MMMMMMMM"), window);
    const QImage image = tip()->grab().toImage();
    const QColor background = image.pixelColor(3, 3);
    QColor text = background;
    for (int y = 3; y < image.height() - 3; ++y)
        for (int x = 3; x < image.width() - 3; ++x)
            if (contrast(image.pixelColor(x, y), background) > contrast(text, background))
                text = image.pixelColor(x, y);
    EXPECT_LT(luminance(background), 0.1);
    EXPECT_GE(contrast(text, background), 7);
}
