#pragma once

#include "center/BridgeProgram.h"
#include "channel/Message.h"

#include <QStringList>

#include <functional>
#include <set>

namespace center {

class BridgeUpdates;

// Offers the panel the finance files that korvel-today-bridge finds, and connects the one that the user
// chooses. The panel has a number for each: no other file can be connected by it. Main thread only.
class SourceOffers final {
public:
    SourceOffers(BridgeCall call, BridgeUpdates& updates,
                 std::function<void(const channel::ToExtension&)> tell);

    void find();
    void connect(int number);

private:
    void offer(const BridgeResult& found);
    void fail(int number, const BridgeResult& result);

    BridgeCall call_;
    BridgeUpdates& updates_;
    std::function<void(const channel::ToExtension&)> tell_;
    QStringList offered_; // paths, by their numbers
    bool isFinding_ = false;
    std::set<int> connecting_;
};

} // namespace center
