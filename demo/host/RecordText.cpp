#include "host/RecordText.h"

#include "exchange/FeedRewriter.h"
#include "exchange/Text.h"

#include <QLocale>
#include <QStringList>

namespace host {

namespace plist = platform::plist;
using exchange::ActionType;

namespace {

std::optional<std::int64_t> integerOf(const plist::Value* value) {
    const plist::Integer* integer = value ? value->integer() : nullptr;
    if (!integer || integer->isLarge)
        return std::nullopt;
    return static_cast<std::int64_t>(integer->bits);
}

QString daysAhead(std::int64_t days) {
    return days == 1 ? QStringLiteral("Later, in 1 day") : QStringLiteral("Later, in %1 days").arg(days);
}

QString meaningOf(std::int64_t type, std::int64_t parameter) {
    switch (static_cast<ActionType>(type)) {
    case ActionType::Paid:
        return QStringLiteral("Paid");
    case ActionType::Later:
        return daysAhead(parameter);
    case ActionType::Delete:
        return parameter == 1 ? QStringLiteral("Delete, with all later ones") : QStringLiteral("Delete");
    }
    return QStringLiteral("Unknown action %1").arg(type);
}

QString valueText(const plist::Value& value) {
    switch (value.kind()) {
    case plist::Kind::Boolean:
        return *value.boolean() ? QStringLiteral("true") : QStringLiteral("false");
    case plist::Kind::Integer:
        return value.integer()->isLarge ? QString::number(value.integer()->bits)
                                        : QString::number(static_cast<qint64>(value.integer()->bits));
    case plist::Kind::Real:
        return numberText(*value.real());
    case plist::Kind::String:
        return exchange::textFromUtf8(*value.string());
    case plist::Kind::Array:
        return QStringLiteral("array");
    case plist::Kind::Dictionary:
        return QStringLiteral("dictionary");
    case plist::Kind::Data:
        return QStringLiteral("data");
    case plist::Kind::Date:
        return QStringLiteral("date");
    default:
        return QStringLiteral("value");
    }
}

} // namespace

LoggedAction loggedAction(const plist::Value& record) {
    LoggedAction action{QStringLiteral("Not one of the widget's"), std::nullopt, std::nullopt};
    const plist::Dictionary* fields = record.dictionary();
    if (!fields)
        return action;
    const plist::Value* plan = fields->find("pk");
    const plist::Value* date = fields->find("date");
    if (plan && plan->string())
        action.plan = exchange::textFromUtf8(*plan->string());
    if (date)
        action.date = plist::numberOf(*date);
    const auto type = integerOf(fields->find("type"));
    const auto parameter = integerOf(fields->find("param"));
    if (type && parameter)
        action.meaning = meaningOf(*type, *parameter);
    return action;
}

QString recordText(const plist::Value& record) {
    const plist::Dictionary* fields = record.dictionary();
    if (!fields)
        return valueText(record);
    QStringList parts;
    for (const auto& [key, value] : *fields)
        parts << exchange::textFromUtf8(key) + QLatin1Char(' ') + valueText(value);
    return parts.join(QStringLiteral(", "));
}

QString numberText(double number) {
    return QString::number(number, 'f', QLocale::FloatingPointShortest);
}

QString outputLine(std::initializer_list<QString> fields) {
    QStringList texts;
    for (QString field : fields) {
        for (QChar& character : field)
            if (character.category() == QChar::Other_Control)
                character = QLatin1Char(' ');
        texts << field;
    }
    return texts.join(QLatin1Char('\t')) + QLatin1Char('\n');
}

} // namespace host
