#pragma once

#include "panel/Backdrop.h"
#include "panel/WindowPlace.h"
#include "platform/extension/ViewController.h"
#include "platform/system/MainQueue.h"
#include "platform/views/ScrollView.h"

#include <QDeadlineTimer>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace panel {

// The limit of the panel's height: that of the screen, or that of the content for a picture of the panel.
enum class Height { OfScreen, OfContent };

// A dark window at the right edge of a screen with the view of one controller in it. It takes the height that
// the controller prefers, animated while it is shown. It is never taller than the screen's work area; a
// taller view scrolls. It is docked again when the screens change, unless the user has moved it.
class PanelWindow final : public QWidget {
    Q_OBJECT

public:
    PanelWindow(Backdrop backdrop, Height height, int contentWidth);
    ~PanelWindow() override;

    // Of a window that is hidden.
    void setBackdrop(Backdrop backdrop);
    // Shows the view of a controller. A window that is open stays scrolled to where it is.
    void setContent(std::shared_ptr<platform::ViewController> controller);
    void setEscapePressed(std::function<void()> handler) { escapePressed_ = std::move(handler); }
    void setCloseRequested(std::function<void()> handler) { closeRequested_ = std::move(handler); }
    // Called when a mouse button has been released anywhere in the window.
    void setMouseReleased(std::function<void()> handler) { mouseReleased_ = std::move(handler); }

    // Called once each time the window has been shown, when all of it is painted.
    void setPainted(std::function<void()> handler) { painted_ = std::move(handler); }

    // Moves the window, which is hidden, to the right edge of a screen, or of the one that it has. On Wayland
    // the compositor chooses the screen, and where it does not dock windows, the place.
    void dock(QScreen* screen);

    // Raises the window, which is shown, and asks for the focus. On Wayland the desktop gives it for a token
    // of what the user did, and is asked once the window is painted.
    void takeFocus(const QString& activationToken);
    // Whether the focus was in it since it was asked for, and no longer is.
    [[nodiscard]] bool hasLostFocus() const;

    // The margins around the content, points.
    static constexpr int horizontalMargin = 12;
    static constexpr int verticalMargin = 8;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool nativeEvent(const QByteArray& eventType, void* message, qintptr* result) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] int tallest() const;
    void preferredSizeChanged();
    void applyBackdrop();
    [[nodiscard]] int sheetHeightOf(double contentHeight) const;
    [[nodiscard]] QRect sheet() const;
    void setContentHeight(double height);
    void setSheet(double contentHeight);
    void setWindowHeight(int height);
    void insistOnHeight();
    void painted();
    void requestFocus(const QString& activationToken);
    [[nodiscard]] bool isFocused() const;
    void watch(const QScreen& screen);
    void screensChanged();
    void screenChosen(QScreen* screen);
    void layoutScrollView();

    Backdrop backdrop_;
    Height height_;
    int contentWidth_;
    WindowPlace place_;
    bool isPlaced_ = false;        // by the window manager, since the window was shown
    QDeadlineTimer screensSettle_; // after they have changed
    std::shared_ptr<platform::ViewController> controller_;
    platform::ScrollView* scrollView_;
    double contentHeight_ = 0;
    double targetHeight_ = 0;
    int triesForHeight_ = 0; // since it was set
    int grantedHeight_ = 0;  // the window's, as the X server tells
    int sheetHeight_ = 0;    // of what is painted, which a translucent window may be higher than
    std::unique_ptr<platform::MainQueue::Ticking> resizing_;
    std::function<void()> escapePressed_;
    std::function<void()> closeRequested_;
    std::function<void()> mouseReleased_;
    std::function<void()> painted_;
    bool hadFocus_ = false;               // since it was asked for
    bool awaitsPainting_ = false;         // since it was shown
    std::optional<QString> focusRequest_; // with this token, once it is painted
};

} // namespace panel
