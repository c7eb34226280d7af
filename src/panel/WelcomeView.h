#pragma once

#include "platform/views/View.h"

#include <QFont>
#include <QString>
#include <QStringList>

#include <functional>

class QPainter;

namespace panel {

// A title and paragraphs below it, which wrap at the view's width; a word that is wider is broken. To
// assistive programs it is one label.
class WelcomeView final : public platform::View {
    Q_OBJECT

public:
    using View::View;

    void setTexts(const QString& title, const QStringList& paragraphs);
    // Called with the height in points that the texts take, when they are set and when the width changes.
    void setHeightChanged(std::function<void(double)> handler) { heightChanged_ = std::move(handler); }

    void layoutViews() override;
    [[nodiscard]] platform::AccessibleTraits accessibleTraits() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double setText(const QString& text, const QFont& font, double y, QPainter* painter) const;
    double setAll(QPainter* painter) const;

    QString title_;
    QStringList paragraphs_;
    std::function<void(double)> heightChanged_;
};

} // namespace panel
