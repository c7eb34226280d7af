#pragma once

#include "platform/plist/Reader.h"

#include <optional>
#include <string>
#include <string_view>

// From the bytes of a text form to UTF-8.
namespace platform::plist {

// A list's text, for the XML reader and for the old form's, which look at it differently.
struct DecodedText {
    std::string buffer; // what the views refer to where the input had to be converted
    std::string_view
        xml; // without a byte order mark, and up to a lone surrogate, which ends it for the platform
    std::string_view old; // without a mark
};

// By byte order mark (UTF-8, UTF-16, UTF-32), else by the `encoding="…"` of a leading `<?xml`, else UTF-8.
// UTF-8 is not checked here: the readers do, where it matters. An error where the encoding is unknown or the
// bytes are not of it. The result's views refer to the input or to its own buffer: it must not be moved.
[[nodiscard]] std::optional<Error> decodeText(std::string_view bytes, DecodedText& result);

} // namespace platform::plist
