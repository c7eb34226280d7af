#pragma once

#include "channel/Connection.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QTimer>

#include <functional>
#include <memory>

namespace center {

// The process that shows the panel: this program once more, in its other role. Main thread only.
class Extension final {
public:
    Extension();
    ~Extension();
    Extension(const Extension&) = delete;
    Extension& operator=(const Extension&) = delete;

    // The address of the accessibility bus, empty while no assistive program asks for it. Counts from the
    // next start.
    void setAccessibilityBus(const QString& address) { accessibilityBus_ = address; }

    // Starts the process. Has no effect while one runs.
    void start();
    [[nodiscard]] bool isRunning() const { return process_ != nullptr; }
    [[nodiscard]] bool isReady() const { return isReady_; }
    // Whether it runs and has been ready, and will end without taking anything more.
    [[nodiscard]] bool isEnding() const { return isEnding_; }

    // Asks it to end when nothing that the user has chosen is pending; one that does not within five seconds
    // is killed, as is one that does not get ready, or show or hide its panel, within fifteen.
    void quit();
    // Waits for its end, two seconds at most; for when this process is about to end at once.
    void waitForEnd();

    void send(const channel::ToExtension& message);

    void setReady(std::function<void()> handler) { ready_ = std::move(handler); }
    // What it says, other than that it is ready.
    void setReceived(std::function<void(const channel::FromExtension&)> handler) {
        received_ = std::move(handler);
    }
    // It has ended, by itself or because it was asked to.
    void setEnded(std::function<void(bool wasAsked)> handler) { ended_ = std::move(handler); }

private:
    [[nodiscard]] QProcessEnvironment environment() const;
    void take(const channel::FromExtension& message);
    void terminate();
    void processEnded();

    std::unique_ptr<QProcess> process_;
    std::unique_ptr<channel::ConnectionToExtension> connection_;
    QTimer deadline_; // of the answer that is waited for, or of its end
    bool isReady_ = false;
    bool isEnding_ = false;
    bool wasAsked_ = false;
    QString accessibilityBus_;
    std::function<void()> ready_;
    std::function<void(const channel::FromExtension&)> received_;
    std::function<void(bool)> ended_;
};

} // namespace center
