#include "views/controls/TodayActionSheetView.h"

#include "platform/images/BundleImages.h"
#include "platform/system/Fatal.h"
#include "platform/system/MainQueue.h"
#include "platform/views/AnimationGroup.h"
#include "platform/views/Fonts.h"
#include "platform/views/InterfaceFile.h"

using namespace std::chrono_literals;

namespace {

constexpr double titleXOffset = 50;
constexpr double titleYOffset = 8;
constexpr double buttonTitleSize = 15;
constexpr double cancelOfTwo = 165;
constexpr double cancelOfThree = 213;
constexpr double heightOfTwo = 197;
constexpr double heightOfThree = 245;
constexpr auto fadeDuration = 300ms;
constexpr auto reportDelay = 500ms;

// The cell of a button of the sheet. A cell of another class is a fault of the interface file.
TodayTintButtonCell& tintCell(platform::Button& button) {
    auto* cell = dynamic_cast<TodayTintButtonCell*>(&button.cell());
    platform::require(cell != nullptr);
    return *cell;
}

QColor bandColor() {
    return QColor::fromRgbF(0.5F, 0.5F, 0.5F, 0.33F);
}

} // namespace

TodayActionSheetView::TodayActionSheetView(QWidget* parent)
    : View(parent) {}

std::shared_ptr<TodayActionSheetView> TodayActionSheetView::createNewActionSheet() {
    const auto file = platform::InterfaceFile::named(QStringLiteral("TodayActionSheetView"));
    if (!file)
        return nullptr;
    for (const auto& object : file->instantiate())
        if (auto sheet = std::dynamic_pointer_cast<TodayActionSheetView>(object))
            return sheet;
    return nullptr;
}

void TodayActionSheetView::awakeFromNib() {
    View::awakeFromNib();
    titleBackgroundView->setFillColor(bandColor());
    theCancelButton->setAttributedTitle(attributedStringWithTitle(qtTrId("CancelButtonTitle")));
    TodayTintButtonCell& cancel = tintCell(*theCancelButton);
    cancel.titleXOffset = titleXOffset;
    cancel.titleYOffset = titleYOffset;
    for (platform::Button* button : {&*checkButton1, &*checkButton2, &*checkButton3}) {
        TodayTintButtonCell& cell = tintCell(*button);
        cell.titleXOffset = titleXOffset;
        cell.titleYOffset = titleYOffset;
        cell.imageCenterX = false;
    }
    layoutViews();
}

platform::AttributedString TodayActionSheetView::attributedStringWithTitle(const QString& text) {
    return {text, platform::systemFont(buttonTitleSize), Qt::white, Qt::AlignLeading};
}

void TodayActionSheetView::showWithTitle(const QString& title,
                                         const std::shared_ptr<TodayActionSheetViewDelegate>& receiver,
                                         const QString& button1, const QString& button2,
                                         const std::optional<QString>& button3) {
    delegate = receiver;
    titleLabel->setStringValue(title);
    checkButton1->setAttributedTitle(attributedStringWithTitle(button1));
    checkButton2->setAttributedTitle(attributedStringWithTitle(button2));
    if (!button3) {
        numberOfButton = 2;
        checkButton3->setHidden(true);
        verticalConstraintCancel->setConstant(cancelOfTwo);
    } else {
        checkButton3->setAttributedTitle(attributedStringWithTitle(*button3));
        numberOfButton = 3;
        verticalConstraintCancel->setConstant(cancelOfThree);
    }
    disableAllButtons_ = false;
}

double TodayActionSheetView::contentHeight() const {
    return numberOfButton == 2 ? heightOfTwo : heightOfThree;
}

void TodayActionSheetView::setUnflippedFrame(const QRectF& frame, double superviewHeight) {
    setFrame(QRectF(frame.x(), superviewHeight - frame.bottom(), frame.width(), frame.height()));
}

void TodayActionSheetView::checkButtonClick1() {
    choose(*checkButton1, {&*checkButton2, &*checkButton3, &*theCancelButton}, 1);
}

void TodayActionSheetView::checkButtonClick2() {
    choose(*checkButton2, {&*checkButton1, &*checkButton3, &*theCancelButton}, 2);
}

void TodayActionSheetView::checkButtonClick3() {
    choose(*checkButton3, {&*checkButton2, &*checkButton1, &*theCancelButton}, 3);
}

void TodayActionSheetView::cancelButtonClick() {
    if (disableAllButtons_)
        return;
    disableButtons();
    hideViewsWithAnimation({&*checkButton1, &*checkButton2, &*checkButton3});
    postButtonClicked(0);
}

void TodayActionSheetView::choose(platform::Button& chosen, std::initializer_list<platform::View*> others,
                                  std::int64_t index) {
    if (disableAllButtons_)
        return;
    disableButtons();
    hideViewsWithAnimation(others);
    configureButtonChecked(chosen);
    postButtonClicked(index);
}

void TodayActionSheetView::disableButtons() {
    disableAllButtons_ = true;
    dropHeldPress(); // of another button, where a key has answered
}

void TodayActionSheetView::configureButtonChecked(platform::Button& button) {
    const platform::Image check = platform::imageNamed(QStringLiteral("paid"));
    platform::require(!check.isNull());
    button.setImage(tintedImage(check, Qt::white));
}

platform::Image TodayActionSheetView::tintedImage(const platform::Image& image, const QColor& tintColor) {
    return image.tinted(tintColor);
}

platform::View* TodayActionSheetView::hitTest(QPointF point) {
    platform::View* hit = View::hitTest(point);
    return hit && disableAllButtons_ ? this : hit;
}

void TodayActionSheetView::hideViewsWithAnimation(std::initializer_list<platform::View*> views) {
    platform::AnimationGroup fade(fadeDuration);
    for (platform::View* view : views)
        fade.fadeAlpha(*view, 0);
    fade.end();
}

void TodayActionSheetView::postButtonClicked(std::int64_t index) {
    platform::MainQueue::current().after(reportDelay, [this, self = weak_from_this().lock(), index] {
        if (const auto receiver = delegate)
            receiver->actionSheetClickedButtonAtIndex(index);
        delegate = nullptr;
    });
}

void TodayActionSheetView::layoutViews() {
    const double width = bounds().width();
    const auto stretch = [width](platform::View& view, double y) {
        const QRectF frame = view.frame();
        view.setLogicalFrame(QRectF(frame.x(), y, width - 2 * frame.x(), frame.height()));
    };
    for (platform::View* view :
         std::initializer_list<platform::View*>{titleBackgroundView.get(), titleLabel.get(),
                                                checkButton1.get(), checkButton2.get(), checkButton3.get()})
        if (view)
            stretch(*view, view->frame().y());
    if (theCancelButton.get() && verticalConstraintCancel.get())
        stretch(*theCancelButton, verticalConstraintCancel->constant());
}

platform::AccessibleTraits TodayActionSheetView::accessibleTraits() const {
    platform::AccessibleTraits traits;
    traits.role = QAccessible::Dialog;
    traits.name = titleLabel->stringValue();
    return traits;
}
