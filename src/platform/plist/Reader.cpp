#include "platform/plist/Reader.h"

#include "platform/plist/Encoding.h"
#include "platform/plist/XmlReader.h"

namespace platform::plist {

ReadResult read(std::string_view bytes) {
    if (bytes.empty())
        return Error{0, 1, "The list is empty"};
    DecodedText text;
    if (std::optional<Error> error = decodeText(bytes, text))
        return *error;
    return readXml(text.xml);
}

} // namespace platform::plist
