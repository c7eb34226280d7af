#pragma once

#include "platform/views/View.h"

#include <QString>
#include <QStringList>

class QPainter;

namespace panel {

// A title and paragraphs below it, within the margins of the contents. To assistive programs it is one label.
class WelcomeView final : public platform::View {
    Q_OBJECT

public:
    explicit WelcomeView(QWidget* parent = nullptr);

    // Without a title the paragraphs stand alone.
    void setTexts(const QString& title, const QStringList& paragraphs);

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] platform::AccessibleTraits accessibleTraits() const override;

    static constexpr int margin = 12; // points above and below, at first

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double setAll(double width, QPainter* painter) const;

    QString title_;
    QStringList paragraphs_;
};

} // namespace panel
