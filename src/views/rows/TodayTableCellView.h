#pragma once

#include "model/TodayTransaction.h"
#include "platform/images/Image.h"
#include "platform/views/Box.h"
#include "platform/views/ImageView.h"
#include "platform/views/Label.h"
#include "platform/views/LayerView.h"
#include "platform/views/LayoutConstraint.h"
#include "platform/views/Outlet.h"
#include "platform/views/View.h"
#include "views/controls/TodayButtonsPanel.h"

#include <QColor>

#include <memory>

class TodayTableCellView;

// A row reports its clicks to this interface. An action concerns the transaction of the row that was opened
// last.
class TodayTableViewCellDelegate {
public:
    virtual ~TodayTableViewCellDelegate() = default;
    // The row has started to open after a click.
    virtual void todayTableViewCellWillExpanded(TodayTableCellView& cell) = 0;
    // One of the four action buttons was clicked.
    virtual void todayTableViewCellClickedAction(TodayTransactionAction action) = 0;
};

// The row of a transaction: icon, name, due date, due state, and the amount on a badge. A click slides the
// content away from the panel of four buttons, which take presses from when the row starts to open until it
// starts to close. Configuring the row again replaces all of its content but does not close it.
class TodayTableCellView final : public platform::View, public TodayButtonsPanelDelegate {
    Q_OBJECT

public:
    explicit TodayTableCellView(QWidget* parent = nullptr);

    const double clickedAlpha = 0.5;
    std::shared_ptr<TodayTableViewCellDelegate> delegate;
    TodayTransactionPtr item;

    static constexpr QColor overdueColor{243, 123, 5};
    static constexpr QColor mainColor{255, 255, 255};
    static constexpr QColor sumBackgroundIncomeColor{39, 213, 235};
    static constexpr QColor sumBackgroundExpenseColor{253, 203, 1};
    static constexpr QColor sumBackgroundDefaultColor{255, 255, 255};
    static constexpr QColor sumTextColor{34, 62, 75};

    // The interface file connects the outlets. Using one that is not connected is fatal.
    platform::Outlet<platform::View> cellContentView;
    platform::Outlet<platform::ImageView> transactionImageView;
    platform::Outlet<platform::Label> titleLabel;
    platform::Outlet<platform::Label> subtitleLabel;
    platform::Outlet<platform::LayerView> sumBackgroundView;
    platform::Outlet<platform::Box> sumBackgroundBox;
    platform::Outlet<platform::ImageView> transactionTypeImageView;
    platform::Outlet<platform::Label> sumLabel;
    platform::Outlet<platform::LayoutConstraint> titleRightSpaceLayoutConstraint;
    platform::Outlet<platform::LayoutConstraint>
        widthConstraint; // the width of the buttons, by which the content slides
    platform::Outlet<platform::LayoutConstraint>
        cellContentViewRightSpaceConstraint; // 0 when closed, negative when open
    platform::Outlet<platform::LayoutConstraint> subtitleWidthLayoutConstraint;
    platform::Outlet<platform::LayoutConstraint> sumWidthLayoutConstraint;
    platform::Outlet<platform::LayoutConstraint> sumBackgroundWidthLayoutConstraint;
    platform::Outlet<TodayButtonsPanel> rightButtonsPanel;

    void awakeFromNib() override;

    // Shows a transaction. maxSum is the width in points of the list's widest amount in the bold system font
    // of size 16. A NaN does not change the column and the font of the amount.
    void configureForItem(const TodayTransactionPtr& item, double maxSum);

    // Opens or closes the row within 0.2 seconds.
    void cellClicked();
    // Closes the row if it is open, without telling the delegate.
    void collapseCell();
    [[nodiscard]] bool isExpanded() const { return isExpandedState_; }

    void mouseDown(const platform::MouseEvent& event) override;
    void mouseUp(const platform::MouseEvent& event) override;
    void mouseCancelled() override;
    [[nodiscard]] platform::View* hitTest(QPointF point) override;
    [[nodiscard]] platform::View* clickTarget() override;
    void buttonsPanelUserClickAction(TodayTransactionAction action) override;

    void layoutViews() override;
    [[nodiscard]] platform::AccessibleTraits accessibleTraits() const override;
    void performAccessibleAction(const QString& action) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void configureAmountColumn(const QString& amount, double maxSum);
    void configureDate();
    void configureBadge();
    void configureDueState();
    void layoutContent(double rowWidth);
    void setExpanded(bool expanded);
    void setButtonsTakePresses(bool take);
    void setCurrentStateExpanded();
    void close();

    [[nodiscard]] static QString dateText(const TodayTransaction& item);
    [[nodiscard]] static platform::Image templateImageWithTintColor(const platform::Image& image,
                                                                    const QColor& tint);

    bool isExpandedState_ = false;
    bool laysOutLater_ = false; // set while several constraints change
};
