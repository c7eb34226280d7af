#pragma once

#include "model/TodayTransactionAction.h"
#include "platform/views/View.h"

#include <memory>

// Receives the action of each click on one of the four buttons.
class TodayButtonsPanelDelegate {
public:
    virtual ~TodayButtonsPanelDelegate() = default;
    virtual void buttonsPanelUserClickAction(TodayTransactionAction action) = 0;
};

// The four action buttons of an open row: Paid, Later, Info and Delete from the leading edge. The values of
// Later and Delete are placeholders; the user chooses them in the action sheet.
class TodayButtonsPanel final : public platform::View {
    Q_OBJECT
    Q_PROPERTY(double buttonSize MEMBER buttonSize CONSTANT)
    Q_PROPERTY(double marginX MEMBER marginX CONSTANT)

public:
    explicit TodayButtonsPanel(QWidget* parent = nullptr);

    const double buttonSize = 50; // width and height of each button, points
    const double marginX =
        -5; // the leftmost button starts outside the panel in both layout directions, on purpose
    std::shared_ptr<TodayButtonsPanelDelegate> delegate;

    // Makes the four buttons in the current layout direction. Each call adds four buttons.
    void generateButtons();

    void buttonPaidClick();
    void buttonLaterClick();
    void buttonInfoClick();
    void buttonDeleteClick();

private:
    void report(TodayTransactionAction action);
};
