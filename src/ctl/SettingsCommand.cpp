#include "ctl/SettingsCommand.h"

#include "ctl/Host.h"
#include "ctl/Json.h"
#include "ctl/Portability.h"
#include "ctl/PrintBudget.h"
#include "ctl/Terminal.h"
#include "exchange/SharedSettings.h"
#include "exchange/Text.h"
#include "platform/system/NumberText.h"

#include <ostream>

namespace ctl {

namespace {

using platform::SharedDefaults;

constexpr const char* cannotOpen = "the shared settings are no dictionary";

enum class SettingType { String, Integer, Real };

// The known keys have values of a fixed type. The value of any other key is a string.
SettingType typeOf(const std::string& key) {
    if (key == "show_transactions_count" || key == "notification_days_count")
        return SettingType::Integer;
    return key == "edit_transaction_date" ? SettingType::Real : SettingType::String;
}

bool isUtf8(const std::string& bytes) {
    const QString text = exchange::textFromUtf8(bytes);
    return text.isValidUtf16() && exchange::utf8FromText(text) == bytes;
}

// Sets the value. Returns an error message where the key does not take it, otherwise an empty string.
std::string assign(SharedDefaults& defaults, const std::string& key, const std::string& value) {
    switch (typeOf(key)) {
    case SettingType::Integer:
        if (const auto integer = platform::numberFromText<std::int64_t>(value))
            defaults.setInteger(key, *integer);
        else
            return key + " takes an integer, not " + value;
        return {};
    case SettingType::Real:
        if (const auto real = platform::numberFromText<double>(value))
            defaults.setDouble(key, *real);
        else
            return key + " takes a number, not " + value;
        return {};
    case SettingType::String:
        break;
    }
    if (!isUtf8(key) || !isUtf8(value))
        return "a setting's key and value are UTF-8";
    defaults.setString(key, value);
    return {};
}

int set(SharedDefaults& defaults, const Options& options, Streams& streams) {
    if (const std::string fault = assign(defaults, options.line.operands[2], options.line.operands[3]);
        !fault.empty())
        return misused(streams, options.line.placeOf(3), fault);
    // The other settings are written again with this one.
    if (const auto fault = describeUnportable(platform::plist::Value(defaults.values())))
        return failed(streams, containerPath(), *fault);
    if (!hasContainer())
        return failedWithoutContainer(streams);
    return reportWrite(streams, settingsFile(), defaults.save());
}

int get(const SharedDefaults& defaults, const std::string& key, const Options& options, Streams& streams) {
    if (const std::error_code error = settingsError())
        return failed(streams, settingsFile(), error.message());
    const platform::plist::Value* value = defaults.valueForKey(key);
    if (!value)
        return failed(streams, containerPath(), "there is no setting " + key);
    const std::optional<std::string> text = defaults.stringForKey(key);
    if (!isPrintable(*value))
        return failed(streams, containerPath(), "the setting " + key + " is too large when written out");
    if (options.json || !text)
        writeJson(streams.out, *value);
    else
        streams.out << terminalLines(*text);
    streams.out << '\n';
    return Done;
}

} // namespace

int settings(const Options& options, Streams& streams) {
    const auto& words = options.line.operands;
    auto defaults = exchange::openSharedSettings();
    if (!defaults)
        return failed(streams, containerPath(), cannotOpen);
    return words[1] == "get" ? get(*defaults, words[2], options, streams) : set(*defaults, options, streams);
}

} // namespace ctl
