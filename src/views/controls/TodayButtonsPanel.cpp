#include "views/controls/TodayButtonsPanel.h"

#include "platform/images/BundleImages.h"
#include "platform/views/Button.h"
#include "views/controls/TodayTintButtonCell.h"

#include <array>

namespace {

enum class Cell { Standard, Tinted };

struct ButtonKind {
    const char* imageName;
    const char* helpTextKey;
    Cell cell;
    void (TodayButtonsPanel::*click)();
};

// The buttons from the leading edge.
constexpr std::array<ButtonKind, 4> buttonKinds{{
    {"paid", QT_TRID_NOOP("PaidButtonHelp"), Cell::Standard, &TodayButtonsPanel::buttonPaidClick},
    {"later", QT_TRID_NOOP("LaterButtonHelp"), Cell::Standard, &TodayButtonsPanel::buttonLaterClick},
    {"info", QT_TRID_NOOP("InfoButtonHelp"), Cell::Tinted, &TodayButtonsPanel::buttonInfoClick},
    {"delete", QT_TRID_NOOP("DeleteButtonHelp"), Cell::Tinted, &TodayButtonsPanel::buttonDeleteClick},
}};

} // namespace

TodayButtonsPanel::TodayButtonsPanel(QWidget* parent)
    : View(parent) {}

void TodayButtonsPanel::generateButtons() {
    const bool mirrored = userInterfaceLayoutDirection() == Qt::RightToLeft;
    for (std::size_t i = 0; i < buttonKinds.size(); ++i) {
        const ButtonKind& kind = buttonKinds[i];
        auto* button = new platform::Button(this);
        if (kind.cell == Cell::Tinted) {
            auto cell = std::make_shared<TodayTintButtonCell>();
            cell->tintColor = Qt::white;
            button->setCell(std::move(cell));
        }
        const std::size_t place = mirrored ? buttonKinds.size() - 1 - i : i;
        button->setFrame(
            QRectF(static_cast<double>(place) * buttonSize + marginX, 0, buttonSize, buttonSize));
        button->setImage(platform::imageNamed(QLatin1String(kind.imageName)));
        button->setAction([this, click = kind.click] { (this->*click)(); });
        button->setBordered(false);
        button->setFocusRingType(platform::Button::FocusRingType::None);
        button->setHelpTextKey(kind.helpTextKey);
        addSubview(*button);
    }
}

void TodayButtonsPanel::buttonPaidClick() {
    report(TodayTransactionAction::Paid());
}

void TodayButtonsPanel::buttonLaterClick() {
    report(TodayTransactionAction::Later(0));
}

void TodayButtonsPanel::buttonInfoClick() {
    report(TodayTransactionAction::Info());
}

void TodayButtonsPanel::buttonDeleteClick() {
    report(TodayTransactionAction::Delete(false));
}

void TodayButtonsPanel::report(TodayTransactionAction action) {
    if (const auto receiver = delegate)
        receiver->buttonsPanelUserClickAction(action);
}
