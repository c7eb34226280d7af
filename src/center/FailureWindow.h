#pragma once

#include <QDialog>

#include <functional>
#include <memory>

class QLabel;
class QPlainTextEdit;
class QProcess;
class QPushButton;

namespace center {

// Stands in the panel's place while the list cannot be shown: says so, offers another try, and tells on
// request what `korvel-todayctl check` finds. An ordinary window in the desktop's own colours.
class FailureWindow final : public QDialog {
    Q_OBJECT

public:
    FailureWindow();
    ~FailureWindow() override;

    // Shows it at the right edge of a screen, without what was told before; an unknown or empty name means
    // the primary screen. A window that is shown already is raised and takes the focus.
    void open(const QString& screen);

    void setTryAgain(std::function<void()> handler) { tryAgain_ = std::move(handler); }
    // The user has closed the window.
    void setDismissed(std::function<void()> handler) { dismissed_ = std::move(handler); }

    // Closes the window as Escape does.
    void reject() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void forgetFindings();
    void runCheck();
    void showCheck(const QString& text);
    void dock();

    QPushButton* explain_;
    QPlainTextEdit* findings_;
    std::unique_ptr<QProcess> check_;
    QString screen_;
    std::function<void()> tryAgain_;
    std::function<void()> dismissed_;
};

} // namespace center
