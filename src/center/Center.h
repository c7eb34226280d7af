#pragma once

#include "center/ContainerChanges.h"
#include "center/Extension.h"
#include "center/FailureWindow.h"
#include "center/RateLimit.h"
#include "center/RestartPolicy.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace center {

// The panel's life: starts the extension, shows and hides its panel, and stands in for it with a window of
// its own while there is none. Main thread only.
class Center final {
public:
    explicit Center(std::unique_ptr<platform::PathWatcher> watcher);
    ~Center();
    Center(const Center&) = delete;
    Center& operator=(const Center&) = delete;

    // Starts the extension, whose panel stays hidden.
    void start();

    // Each shows the panel, raised, with the focus and with a list that is loaded anew; as soon as there is
    // an extension that can.
    void show(const channel::Show& request);
    void toggle(const channel::Show& request);
    void hide();
    // Ends the extension once nothing is pending, then tells it.
    void quit();

    // Whether the panel has been hidden a moment ago, and not because hide() was called.
    [[nodiscard]] bool hasJustClosed() const;

    // Whether the user prefers that nothing moves.
    void setReducedMotion(bool isReduced);

    // Where assistive programs reach the panel; empty while there are none. An extension that runs is
    // replaced by one that knows it once the panel is hidden.
    void setAccessibilityBus(const QString& address);
    // The display has gone: what the user has chosen is waited for, two seconds at most.
    void waitForExtension() { extension_.waitForEnd(); }

    void setCountsChanged(std::function<void(const channel::Counts&)> handler) {
        countsChanged_ = std::move(handler);
    }
    // What the panel asks for while there is no list: files to connect, and to connect the one of a number.
    void setFindSources(std::function<void()> handler) { findSources_ = std::move(handler); }
    void setConnectSource(std::function<void(int number)> handler) { connectSource_ = std::move(handler); }
    // The answers to these.
    void tellPanel(const channel::ToExtension& answer) { extension_.send(answer); }
    // Called once, as soon as it is asked to quit; nothing is shown any more.
    void setQuitting(std::function<void()> handler) { quitting_ = std::move(handler); }
    void setQuitted(std::function<void()> handler) { quitted_ = std::move(handler); }

private:
    void take(const channel::FromExtension& message);
    void extensionReady();
    void extensionEnded(bool wasAsked);
    void startExtension();
    void showFailure();
    [[nodiscard]] bool isFailureShown() const { return failure_ && failure_->isVisible(); }
    void restart();
    void startAnewIfHidden();
    void startAt(RestartPolicy::Duration moment);
    void stopWaiting();
    [[nodiscard]] bool isAskedFor() const { return asked_.has_value(); }

    Extension extension_;
    RestartPolicy policy_;
    RateLimit openings_; // of URLs, by programs that are started for them
    RateLimit restarts_; // that the extension has asked for
    ContainerChanges changes_;
    std::unique_ptr<FailureWindow> failure_;
    QTimer nextStart_;
    std::optional<channel::Show> asked_;              // while the user wants to see the panel
    std::optional<RestartPolicy::Duration> closedAt_; // by itself, last
    channel::Show lastAsked_;
    bool isUnanswered_ = false; // the last request, which has gone to an extension that was ready
    bool isPending_ = false;
    bool isMotionReduced_ = false;
    bool startsAnewWhenHidden_ = false;
    bool isRestarting_ = false; // the next extension shows what this one does
    bool isQuitting_ = false;
    std::function<void(const channel::Counts&)> countsChanged_;
    std::function<void()> findSources_;
    std::function<void(int)> connectSource_;
    std::function<void()> quitting_;
    std::function<void()> quitted_;
};

} // namespace center
