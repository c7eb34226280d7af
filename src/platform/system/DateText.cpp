#include "platform/system/DateText.h"

#include "platform/system/Moment.h"
#include "platform/system/Region.h"

#include <unicode/datefmt.h>
#include <unicode/timezone.h>

#include <memory>
#include <utility>

namespace platform {

namespace {

// The calendar is part of the locale's name, so the region says all that a format depends on.
std::unique_ptr<icu::DateFormat> makeFormat(const Region& region) {
    std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateInstance(icu::DateFormat::kMedium, icu::Locale(region.locale.c_str())));
    if (format)
        format->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(region.timeZone)));
    return format;
}

// Making a format takes up to a hundred times as long as using it, so the last one is kept; each use checks
// that the region is still the same.
icu::DateFormat* currentFormat() {
    static Region known;
    static std::unique_ptr<icu::DateFormat> format;
    Region region = Region::current();
    if (!format || region != known) {
        known = std::move(region);
        format = makeFormat(known);
    }
    return format.get();
}

} // namespace

QString mediumDateText(double date) {
    const auto moment = millisecondsOf(date);
    icu::DateFormat* format = moment ? currentFormat() : nullptr;
    if (!format)
        return {};
    icu::UnicodeString text;
    format->format(*moment, text);
    return QString::fromUtf16(text.getBuffer(), text.length());
}

} // namespace platform
