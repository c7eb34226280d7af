#pragma once

#include "platform/views/View.h"

#include <QString>

#include <functional>

class QFont;
class QPainter;

namespace panel {

// A file of a finance program that can be connected.
struct Source {
    int number = 0;  // by which the centre knows it
    QString program; // its name, as people know it
    QString path;

    bool operator==(const Source&) const = default;
};

// The row of a file that is offered: its name, below it its program and folder, and below these what was
// wrong when it was chosen. A click chooses it; then it says that the file is being read and takes no further
// click, until the answer is a fault. It looks and behaves like a transaction's row, save that a press that
// is released elsewhere chooses nothing.
class SourceRow final : public platform::View {
    Q_OBJECT

public:
    explicit SourceRow(const Source& source, QWidget* parent = nullptr);

    [[nodiscard]] const Source& source() const { return source_; }
    // Another file is a new offer: neither being read nor at fault.
    void setSource(const Source& source);
    // A sentence in English, in which the path is shortened as people write it.
    void setFault(const QString& reason);
    [[nodiscard]] bool isReading() const { return isReading_; }
    // Called when the file has been chosen.
    void setChosen(std::function<void()> handler) { chosen_ = std::move(handler); }

    void mouseDown(const platform::MouseEvent& event) override;
    void mouseDragged(const platform::MouseEvent& event) override;
    void mouseUp(const platform::MouseEvent& event) override;
    void mouseCancelled() override;
    [[nodiscard]] platform::View* clickTarget() override;

    [[nodiscard]] int heightForWidth(int width) const override;
    // The path, where the row has no room for all of it.
    [[nodiscard]] QString toolTipText() const override;
    [[nodiscard]] platform::AccessibleTraits accessibleTraits() const override;
    void performAccessibleAction(const QString& action) override;

    static constexpr int contentHeight = 50; // points, without what was wrong

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    void choose();
    void setPressed(bool pressed);
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString subtitle() const;
    [[nodiscard]] QRectF placed(const QRectF& logical) const;
    void drawContent(QPainter& painter) const;
    void drawFault(QPainter& painter) const;
    void drawFrame(QPainter& painter) const;

    Source source_;
    QString fault_;
    bool isReading_ = false;
    bool isPressed_ = false;
    std::function<void()> chosen_;
};

} // namespace panel
