#pragma once

#include "center/BridgeProgram.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>
#include <utility>

// Stands in for korvel-today-bridge: the test answers its calls, in their order.
class BridgeStandIn final {
public:
    [[nodiscard]] center::BridgeCall call() {
        return [this](const QStringList& arguments, std::function<void(const center::BridgeResult&)> done) {
            calls_.emplace_back(arguments.join(QLatin1Char(' ')).toStdString(), std::move(done));
        };
    }

    // The arguments of the next call that awaits its answer; empty where there is none.
    [[nodiscard]] std::string next() const { return calls_.empty() ? "" : calls_.front().first; }

    void answer(const std::string& output = {}) { end({true, QByteArray::fromStdString(output), {}}); }
    void fail(const std::string& fault) { end({false, {}, QString::fromStdString(fault)}); }

private:
    void end(const center::BridgeResult& result) {
        ASSERT_FALSE(calls_.empty());
        const auto done = std::move(calls_.front().second);
        calls_.pop_front();
        if (done)
            done(result);
    }

    std::deque<std::pair<std::string, std::function<void(const center::BridgeResult&)>>> calls_;
};
