#pragma once

#include "channel/Connection.h"

#include <QSocketNotifier>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace center {

// Keeps one centre to a user: a lock file in $XDG_RUNTIME_DIR, and beside it a socket by which further starts
// tell the first one what they were asked for. Where that folder cannot be used, each start takes itself for
// the first.
class SingleInstance final {
public:
    // The name of the two files, without ".lock" and ".socket".
    explicit SingleInstance(const std::string& name);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    [[nodiscard]] bool isFirst() const { return isFirst_; }

    // For a further start: asks the first one and waits, ten seconds at most, until it has done so, or, asked
    // to quit, has ended. False where it does not answer.
    [[nodiscard]] bool ask(const channel::Command& command) const;

    // For the first start: calls the handler with what further ones ask. Needs the application.
    void listen(std::function<void(const channel::Command&)> handler);

private:
    using Visitor = channel::Connection<channel::FromSecondStart, channel::ToSecondStart>;

    bool lock(int folder, const std::string& name);
    void accept();

    bool isFirst_ = true;
    int lock_ = -1;
    int socket_ = -1; // listening for the first, connected for a further one
    std::unique_ptr<QSocketNotifier> notifier_;
    std::vector<std::unique_ptr<Visitor>> visitors_;
    std::function<void(const channel::Command&)> asked_;
};

} // namespace center
