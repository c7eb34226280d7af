#include "platform/plist/Writer.h"

#include "platform/plist/xml/XmlWriter.h"

namespace platform::plist {

std::optional<std::string> writeXml(const Value& value) {
    std::string xml(xmlHeader);
    XmlWriter writer(xml);
    if (!writer.write(value, 0))
        return std::nullopt;
    return xml.append(xmlFooter);
}

} // namespace platform::plist
