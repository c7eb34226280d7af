#include "center/SourceOffers.h"

#include "center/BridgeUpdates.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace center {

namespace {

constexpr qsizetype mostOffers = 20;

// A longer text is no message. A sentence names a path, which may be long, before it says what is wrong.
std::string messageText(const QString& text) {
    constexpr qsizetype longest = 300; // of at most three bytes each
    return (text.size() > longest ? QStringLiteral("…") + text.right(longest) : text).toStdString();
}

} // namespace

SourceOffers::SourceOffers(BridgeCall call, BridgeUpdates& updates,
                           std::function<void(const channel::ToExtension&)> tell)
    : call_(std::move(call))
    , updates_(updates)
    , tell_(std::move(tell)) {}

void SourceOffers::find() {
    if (std::exchange(isFinding_, true))
        return;
    call_({QStringLiteral("sources"), QStringLiteral("--json")}, [this](const BridgeResult& found) {
        isFinding_ = false;
        if (found.isDone)
            offer(found);
    });
}

void SourceOffers::offer(const BridgeResult& found) {
    for (const QJsonValue& file : QJsonDocument::fromJson(found.output).array()) {
        const QString path = file[QLatin1String("path")].toString();
        if (!offered_.contains(path)) {
            if (offered_.size() == mostOffers)
                continue;
            offered_.append(path);
        }
        tell_(channel::Source{static_cast<int>(offered_.indexOf(path)),
                              file[QLatin1String("title")].toString().toStdString(), path.toStdString()});
    }
}

void SourceOffers::connect(int number) {
    if (number >= offered_.size() || !connecting_.insert(number).second)
        return;
    call_({QStringLiteral("connect"), offered_[number]}, [this, number](const BridgeResult& connected) {
        if (!connected.isDone) {
            fail(number, connected);
            return;
        }
        updates_.update([this, number](const BridgeResult& updated) {
            if (updated.isDone)
                connecting_.erase(number);
            else
                fail(number, updated);
        });
    });
}

void SourceOffers::fail(int number, const BridgeResult& result) {
    connecting_.erase(number);
    tell_(channel::SourceFault{number, messageText(result.fault)});
}

} // namespace center
