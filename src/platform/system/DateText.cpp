#include "platform/system/DateText.h"

#include "platform/system/IcuTime.h"
#include "platform/system/Region.h"

#include <unicode/datefmt.h>
#include <unicode/timezone.h>

#include <memory>
#include <utility>

namespace platform {

namespace {

// The locale's name includes the calendar, so that the region determines the format.
std::unique_ptr<icu::DateFormat> makeFormat(const Region& region) {
    std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateInstance(icu::DateFormat::kMedium, icu::Locale(region.locale.c_str())));
    if (format)
        format->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(region.timeZone)));
    return format;
}

// The format of the current region. Making one takes much longer than using it, so the last one is cached
// until the region changes.
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
    const auto moment = icuTime(date);
    icu::DateFormat* format = moment ? currentFormat() : nullptr;
    if (!format)
        return {};
    icu::UnicodeString text;
    format->format(*moment, text);
    return QString::fromUtf16(text.getBuffer(), text.length());
}

} // namespace platform
