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

// Hears the answer to a sheet, half a second after the click and at most once a showing: 1, 2 or 3 for a
// choice, 0 for Cancel.
class TodayActionSheetViewDelegate {
public:
    virtual ~TodayActionSheetViewDelegate() = default;
    virtual void actionSheetClickedButtonAtIndex(std::int64_t index) = 0;
};

// A question inside the widget: a title, two or three choices and Cancel. The first click answers it: the
// chosen line gets a check mark, the others fade, and the delegate hears of it. Meant for one question;
// another one takes a new sheet.
class TodayActionSheetView final : public platform::View {
    Q_OBJECT

public:
    explicit TodayActionSheetView(QWidget* parent = nullptr);

    // Connected by the interface file; using a missing one is fatal, and so is a button whose cell is no
    // TodayTintButtonCell.
    platform::Outlet<platform::Box> titleBackgroundView;
    platform::Outlet<platform::Label> titleLabel;
    platform::Outlet<platform::Button> checkButton1;
    platform::Outlet<platform::Button> checkButton2;
    platform::Outlet<platform::Button> checkButton3;
    platform::Outlet<platform::Button> theCancelButton;
    platform::Outlet<platform::LayoutConstraint> verticalConstraintCancel; // the top of Cancel, points
    std::shared_ptr<TodayActionSheetViewDelegate> delegate;                // let go of after the answer
    std::int64_t numberOfButton = 2;                                       // choices in use, 2 or 3

    // A new sheet from the interface file; none where there is no file or no sheet in it.
    [[nodiscard]] static std::shared_ptr<TodayActionSheetView> createNewActionSheet();

    void awakeFromNib() override;
    void showWithTitle(const QString& title, const std::shared_ptr<TodayActionSheetViewDelegate>& receiver,
                       const QString& button1, const QString& button2, const std::optional<QString>& button3);
    // The height in points that the sheet needs.
    [[nodiscard]] double contentHeight() const;

    // Gives the sheet a frame whose y counts upwards from the lower edge of a superview of a height (points).
    // It stays at that distance from the superview's top.
    void setUnflippedFrame(const QRectF& frame, double superviewHeight);

    void checkButtonClick1();
    void checkButtonClick2();
    void checkButtonClick3();
    void cancelButtonClick();

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
