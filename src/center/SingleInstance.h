#pragma once

#include "channel/Connection.h"

#include <QSocketNotifier>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace center {

// Keeps one centre to a user: a lock file in $XDG_RUNTIME_DIR, and beside it a socket by which further starts
// tell the first one what they were asked for. Where that folder cannot be used, each start takes itself for
// the first.
class SingleInstance final {
public:
    // The name of the two files, without ".lock" and ".socket".
    explicit SingleInstance(std::string name);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    [[nodiscard]] bool isFirst() const { return isFirst_; }
    // Whether this one is the first for sure.
    [[nodiscard]] bool isLocked() const { return lock_ >= 0; }

    enum class Answer { Done, None };
    // For a further start: asks the first one and waits, ten seconds at most, until it has done so, or, asked
    // to quit, has ended. Absent where it has ended without an answer and this one is the first now.
    [[nodiscard]] std::optional<Answer> ask(const channel::Command& command);

    // For the first start: calls the handler with what further ones ask. Needs the application.
    void listen(std::function<void(const channel::Command&)> handler);
    // Refuses the starts that come from now on: they wait for the end of this process.
    void stopListening();

private:
    using Visitor = channel::Connection<channel::FromFurtherStart, channel::ToFurtherStart>;

    void lockOrConnect();
    bool lock(int folder);
    void accept();

    std::string name_;
    bool isFirst_ = true;
    int lock_ = -1;
    int socket_ = -1; // listening for the first, connected for a further one
    std::unique_ptr<QSocketNotifier> notifier_;
    std::vector<std::unique_ptr<Visitor>> visitors_;
    std::function<void(const channel::Command&)> asked_;
};

} // namespace center
