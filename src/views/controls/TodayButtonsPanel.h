#pragma once

#include "model/TodayTransactionAction.h"
#include "platform/views/View.h"

#include <memory>

// Hears of a click on one of the four buttons, once a click, from inside the click's handling.
class TodayButtonsPanelDelegate {
public:
    virtual ~TodayButtonsPanelDelegate() = default;
    virtual void buttonsPanelUserClickAction(TodayTransactionAction action) = 0;
};

// The strip of four action buttons that an open row shows: Paid, Later, Info and Delete from the leading
// edge. It knows nothing of transactions; what Later and Delete carry are placeholders that its user
// replaces.
class TodayButtonsPanel final : public platform::View {
    Q_OBJECT
    Q_PROPERTY(double buttonSize MEMBER buttonSize CONSTANT)
    Q_PROPERTY(double marginX MEMBER marginX CONSTANT)

public:
    explicit TodayButtonsPanel(QWidget* parent = nullptr);

    const double buttonSize = 50; // width and height of each button, points
    const double marginX =
        -5; // the leftmost button starts outside the panel, on purpose, in both directions of reading
    std::shared_ptr<TodayButtonsPanelDelegate> delegate;

    // Makes the four buttons, placed for the direction of reading at this moment. Each call makes four more.
    void generateButtons();

    void buttonPaidClick();
    void buttonLaterClick();
    void buttonInfoClick();
    void buttonDeleteClick();

private:
    void report(TodayTransactionAction action);
};
