#pragma once

#include "platform/views/Button.h"
#include "platform/views/Label.h"
#include "platform/views/Outlet.h"
#include "platform/views/View.h"

#include <memory>

// The last row reports clicks to this interface.
class TodayAddTableViewCellDelegate {
public:
    virtual ~TodayAddTableViewCellDelegate() = default;
    virtual void todayAddTableViewCellClickAddButton() = 0;
    // The mouse button was released after a press outside the add button.
    virtual void todayAddTableViewCellClickContentCell() = 0;
};

// The last row: a button that adds a transaction, and a caption. A view below the caption receives all other
// clicks.
class TodayAddTableCellView final : public platform::View {
    Q_OBJECT

public:
    explicit TodayAddTableCellView(QWidget* parent = nullptr);

    std::shared_ptr<TodayAddTableViewCellDelegate> delegate;
    bool contentIsClickable = true; // whether the delegate does something at a click beside the button

    // Connected by the interface file.
    platform::Outlet<platform::Button> addButton;
    platform::Outlet<platform::Label> titleLabel;
    platform::Outlet<platform::View> clickView;

    void awakeFromNib() override;
    void addButtonClick();

    void mouseDown(const platform::MouseEvent& event) override;
    void mouseUp(const platform::MouseEvent& event) override;
    void mouseCancelled() override;
    [[nodiscard]] platform::View* hitTest(QPointF point) override;
    [[nodiscard]] platform::View* clickTarget() override;

    void layoutViews() override;
    [[nodiscard]] platform::AccessibleTraits accessibleTraits() const override;
    void performAccessibleAction(const QString& action) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void reportContentClick();
};
