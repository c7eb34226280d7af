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

// Hears from a row. The row does not say which transaction an action concerns: it is that of the row that
// opened last.
class TodayTableViewCellDelegate {
public:
    virtual ~TodayTableViewCellDelegate() = default;
    // A click has just started to open this row.
    virtual void todayTableViewCellWillExpanded(TodayTableCellView& cell) = 0;
    // One of the panel's buttons was clicked.
    virtual void todayTableViewCellClickedAction(TodayTransactionAction action) = 0;
};

// The row of one transaction: picture, name, due date and state, and the amount on a badge. A click slides
// the content aside and uncovers the panel of four buttons. Reused, it shows nothing of its last transaction;
// whether it is open stays.
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

    // Connected by the interface file; using a missing one is fatal.
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
        widthConstraint; // the buttons' area, and how far the content slides
    platform::Outlet<platform::LayoutConstraint>
        cellContentViewRightSpaceConstraint; // 0 closed, negative open
    platform::Outlet<platform::LayoutConstraint> subtitleWidthLayoutConstraint;
    platform::Outlet<platform::LayoutConstraint> sumWidthLayoutConstraint;
    platform::Outlet<platform::LayoutConstraint> sumBackgroundWidthLayoutConstraint;
    platform::Outlet<TodayButtonsPanel> rightButtonsPanel;

    void awakeFromNib() override;

    // Fills the row. maxSum is the width in points that the widest amount of the list takes in the bold
    // system font of size 16; a NaN leaves the amount's column and font as they are.
    void configureForItem(const TodayTransactionPtr& item, double maxSum);

    // Opens a closed row and closes an open one, in 0.2 seconds.
    void cellClicked();
    // Closes the row where it is open. The delegate is not told.
    void collapseCell();
    [[nodiscard]] bool isExpanded() const { return isExpandedState_; }

    void mouseDown(const platform::MouseEvent& event) override;
    void mouseUp(const platform::MouseEvent& event) override;
    [[nodiscard]] platform::View* hitTest(QPointF point) override;
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
    void setCurrentStateExpanded();
    void close();

    [[nodiscard]] static QString dateText(const TodayTransaction& item);
    [[nodiscard]] static platform::Image templateImageWithTintColor(const platform::Image& image,
                                                                    const QColor& tint);

    bool isExpandedState_ = false;
    bool laysOutLater_ = false; // while several constants change at once
};
