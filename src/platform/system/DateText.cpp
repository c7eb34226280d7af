#include "platform/system/DateText.h"

#include "platform/system/CurrentTimeZone.h"
#include "platform/system/Region.h"
#include "platform/system/WholeSeconds.h"

#include <unicode/datefmt.h>
#include <unicode/timezone.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace platform {

namespace {

// The locale's name includes the calendar, so that it determines the format. The format's time zone is GMT.
std::unique_ptr<icu::DateFormat> makeFormat(const std::string& locale) {
    std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateInstance(icu::DateFormat::kMedium, icu::Locale(locale.c_str())));
    if (format)
        format->setTimeZone(*icu::TimeZone::getGMT());
    return format;
}

// The format of the current locale. Making one takes much longer than using it, so the last one is cached
// until the locale changes.
icu::DateFormat* currentFormat() {
    static std::string known;
    static std::unique_ptr<icu::DateFormat> format;
    std::string locale = Region::current().locale;
    if (!format || locale != known) {
        known = std::move(locale);
        format = makeFormat(known);
    }
    return format.get();
}

} // namespace

QString mediumDateText(double date) {
    const auto moment = wholeSeconds(date);
    icu::DateFormat* format = moment ? currentFormat() : nullptr;
    if (!format)
        return {};
    const std::int64_t wallTime = currentTimeZone().wallTimeAt(*moment);
    icu::UnicodeString text;
    format->format(static_cast<double>(wallTime) * 1000.0, text);
    return QString::fromUtf16(text.getBuffer(), text.length());
}

} // namespace platform
