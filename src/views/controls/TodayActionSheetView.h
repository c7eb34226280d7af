#pragma once

#include "platform/views/Box.h"
#include "platform/views/Button.h"
#include "platform/views/Label.h"
#include "platform/views/LayoutConstraint.h"
#include "platform/views/Outlet.h"
#include "platform/views/View.h"
#include "views/controls/TodayTintButtonCell.h"

#include <QString>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>

// Receives the answer to an action sheet half a second after the click: 1, 2 or 3 for a choice and 0 for
// Cancel. A sheet reports at most one answer.
class TodayActionSheetViewDelegate {
public:
    virtual ~TodayActionSheetViewDelegate() = default;
    virtual void actionSheetClickedButtonAtIndex(std::int64_t index) = 0;
};

// A question in place of the list: a title, two or three choices and Cancel. The first click answers the
// question: the chosen button gets a check mark and the others fade. Each question needs a new sheet.
class TodayActionSheetView final : public platform::View {
    Q_OBJECT

public:
    explicit TodayActionSheetView(QWidget* parent = nullptr);

    // The interface file connects the outlets. Using one that is not connected is fatal, as is a button whose
    // cell is not a TodayTintButtonCell.
    platform::Outlet<platform::Box> titleBackgroundView;
    platform::Outlet<platform::Label> titleLabel;
    platform::Outlet<platform::Button> checkButton1;
    platform::Outlet<platform::Button> checkButton2;
    platform::Outlet<platform::Button> checkButton3;
    platform::Outlet<platform::Button> theCancelButton;
    platform::Outlet<platform::LayoutConstraint> verticalConstraintCancel; // the top of Cancel, points
    std::shared_ptr<TodayActionSheetViewDelegate> delegate;                // null after the answer
    std::int64_t numberOfButton = 2;                                       // the choices, 2 or 3

    // A new sheet from the interface file; null if there is no file or no sheet in it.
    [[nodiscard]] static std::shared_ptr<TodayActionSheetView> createNewActionSheet();

    void awakeFromNib() override;
    void showWithTitle(const QString& title, const std::shared_ptr<TodayActionSheetViewDelegate>& receiver,
                       const QString& button1, const QString& button2, const std::optional<QString>& button3);
    // The height that the sheet needs, points.
    [[nodiscard]] double contentHeight() const;

    // Sets a frame whose y axis points up from the lower edge of the superview. The superview's height is in
    // points. The sheet then keeps its distance from the top of the superview.
    void setUnflippedFrame(const QRectF& frame, double superviewHeight);

    void checkButtonClick1();
    void checkButtonClick2();
    void checkButtonClick3();
    void cancelButtonClick();

    // An answered sheet passes no press to its buttons: a press would light up one that has faded.
    [[nodiscard]] platform::View* hitTest(QPointF point) override;
    void layoutViews() override;
    [[nodiscard]] platform::AccessibleTraits accessibleTraits() const override;

private:
    [[nodiscard]] static platform::AttributedString attributedStringWithTitle(const QString& text);
    [[nodiscard]] static platform::Image tintedImage(const platform::Image& image, const QColor& tintColor);
    void choose(platform::Button& chosen, std::initializer_list<platform::View*> others, std::int64_t index);
    void disableButtons();
    void configureButtonChecked(platform::Button& button);
    void hideViewsWithAnimation(std::initializer_list<platform::View*> views);
    void postButtonClicked(std::int64_t index);

    bool disableAllButtons_ = false; // set by the first click
};
