#pragma once

#include "platform/extension/ViewController.h"
#include "platform/system/MainQueue.h"
#include "platform/views/ScrollView.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace center {

// How a window can look here: a screen that nothing composes shows black where a window is translucent, and a
// window in the desktop's own frame has its corners.
enum class Backdrop { RoundTranslucent, SquareOpaque };

// How tall a panel may become: a picture of one knows no screen.
enum class Height { OfScreen, OfContent };

// The panel that stands in for a notification centre: a dark sheet at the right edge of the screen with the
// view of one controller in it. It takes the height that the controller prefers, with a short animation once
// it shows, is never taller than the screen and scrolls where the view is.
class PanelWindow final : public QWidget {
    Q_OBJECT

public:
    PanelWindow(Backdrop backdrop, Height height, int contentWidth);
    ~PanelWindow() override;

    void setContent(std::shared_ptr<platform::ViewController> controller);
    void setEscapePressed(std::function<void()> handler) { escapePressed_ = std::move(handler); }
    void setCloseRequested(std::function<void()> handler) { closeRequested_ = std::move(handler); }
    // Called before a mouse button that is released anywhere in the window has its effect.
    void setMouseReleased(std::function<void()> handler) { mouseReleased_ = std::move(handler); }

    // Puts the window at the right edge of the screen; a desktop that places windows itself pays no heed.
    void moveToEdge();

    // Room around the content, in points.
    static constexpr int horizontalMargin = 12;
    static constexpr int verticalMargin = 8;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] int tallest() const;
    void preferredSizeChanged();
    void setContentHeight(double height);
    void layoutScrollView();

    Backdrop backdrop_;
    Height height_;
    int contentWidth_;
    std::shared_ptr<platform::ViewController> controller_;
    platform::ScrollView* scrollView_;
    double contentHeight_ = 0;
    double targetHeight_ = 0;
    std::unique_ptr<platform::MainQueue::Ticking> resizing_;
    std::function<void()> escapePressed_;
    std::function<void()> closeRequested_;
    std::function<void()> mouseReleased_;
};

// What this desktop offers.
[[nodiscard]] Backdrop backdropOfDesktop();

} // namespace center
