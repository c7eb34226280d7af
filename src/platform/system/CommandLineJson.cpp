#include "platform/system/CommandLineJson.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace platform {

QJsonValue jsonOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string helpAsJson(std::string_view program, std::span<const CommandLineOption> options,
                       QJsonObject others) {
    QJsonArray list;
    for (const CommandLineOption& option : options) {
        std::string text(option.meaning);
        std::ranges::replace(text, '\n', ' ');
        list.append(QJsonObject{{QStringLiteral("name"), jsonOf(option.name)},
                                {QStringLiteral("shortName"), jsonOf(option.shortName)},
                                {QStringLiteral("value"), jsonOf(option.value)},
                                {QStringLiteral("text"), jsonOf(text)}});
    }
    others.insert(QStringLiteral("program"), jsonOf(program));
    others.insert(QStringLiteral("options"), list);
    return QJsonDocument(others).toJson(QJsonDocument::Compact).toStdString() + '\n';
}

} // namespace platform
