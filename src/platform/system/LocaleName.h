#pragma once

#include <string>
#include <string_view>

namespace platform {

// The ICU name of the process's locale of dates: LC_ALL, LC_TIME or LANG, the first that is set and not
// empty.
[[nodiscard]] std::string dateLocaleName();

// The ICU name of a POSIX locale's name, language[_territory][.codeset][@modifier]: "sr_RS.UTF-8@latin" is
// "sr_Latn_RS", "th_TH@calendar=buddhist" keeps its keyword, a codeset says nothing about dates. "C",
// "POSIX", an empty name and a path are "en_US_POSIX".
[[nodiscard]] std::string icuLocaleName(std::string_view posixName);

} // namespace platform
