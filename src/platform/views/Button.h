#pragma once

#include "platform/views/ButtonCell.h"
#include "platform/views/View.h"

#include <functional>
#include <memory>

namespace platform {

// A push button. Its cell draws it; its action runs when a press is released inside it, on Space or Return
// while it has the keyboard, and when an assistive program presses it.
class Button final : public View {
    Q_OBJECT
    Q_PROPERTY(bool bordered READ isBordered WRITE setBordered)
    Q_PROPERTY(QString imageName READ imageName WRITE setImageName)

public:
    enum class FocusRingType { Default, None };

    explicit Button(QWidget* parent = nullptr);
    ~Button() override;

    [[nodiscard]] ButtonCell& cell() const { return *cell_; }
    [[nodiscard]] const std::shared_ptr<ButtonCell>& sharedCell() const { return cell_; }
    void setCell(std::shared_ptr<ButtonCell> cell);

    [[nodiscard]] const Image& image() const { return image_; }
    void setImage(const Image& image);
    // The bundle's image of a name, for interface files; an unknown one leaves the button without an image.
    [[nodiscard]] const QString& imageName() const { return imageName_; }
    void setImageName(const QString& name);

    [[nodiscard]] const AttributedString& attributedTitle() const { return title_; }
    void setAttributedTitle(const AttributedString& title);

    // Borders and focus rings are the platform's usual look; this project's buttons have neither border nor
    // bezel.
    [[nodiscard]] bool isBordered() const { return bordered_; }
    void setBordered(bool bordered);
    [[nodiscard]] FocusRingType focusRingType() const { return focusRingType_; }
    void setFocusRingType(FocusRingType type);

    // The key of the text that the tooltip and assistive programs have for a button that shows none.
    void setHelpTextKey(const char* key) { helpTextKey_ = key; }

    void setAction(std::function<void()> action) { action_ = std::move(action); }
    // Has no effect while the button is disabled.
    void performClick();

    void mouseDown(const MouseEvent& event) override;
    void mouseDragged(const MouseEvent& event) override;
    void mouseUp(const MouseEvent& event) override;
    void mouseCancelled() override;
    [[nodiscard]] View* clickTarget() override { return action_ ? this : nullptr; }
    [[nodiscard]] QString toolTipText() const override;
    [[nodiscard]] AccessibleTraits accessibleTraits() const override;
    void performAccessibleAction(const QString& action) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void setHighlighted(bool highlighted);

    std::shared_ptr<ButtonCell> cell_;
    Image image_;
    QString imageName_;
    AttributedString title_;
    std::function<void()> action_;
    const char* helpTextKey_ = nullptr;
    FocusRingType focusRingType_ = FocusRingType::Default;
    bool bordered_ = true;
    bool highlighted_ = false;
};

} // namespace platform
