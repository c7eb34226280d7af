#include "platform/plist/Reader.h"

#include "platform/plist/ascii/AsciiReader.h"
#include "platform/plist/binary/BinaryLayout.h"
#include "platform/plist/binary/BinaryReader.h"
#include "platform/plist/text/Encoding.h"
#include "platform/plist/text/Unicode.h"
#include "platform/plist/xml/XmlValueReader.h"

namespace platform::plist {

namespace {

ReadResult readTextForms(std::string_view bytes) {
    DecodedText text;
    if (std::optional<Error> error = decodeText(bytes, text))
        return *error;
    ReadResult xml = readXml(text.xml);
    if (std::holds_alternative<Value>(xml))
        return xml;
    const bool isConverted = !text.buffer.empty();
    ReadResult ascii =
        isConverted || isUtf8(text.old) ? readAscii(text.old) : Error{0, 1, "The text is not valid UTF-8"};
    // Of a text that neither reader takes, the fault in the form that it begins as is told.
    return std::holds_alternative<Value>(ascii) || !beginsAsXml(text.xml) ? ascii : xml;
}

} // namespace

ReadResult read(std::string_view bytes) {
    if (bytes.empty())
        return Error{0, 1, "The list is empty"};
    if (!hasBinaryMagic(bytes))
        return readTextForms(bytes);
    ReadResult binary = readBinary(bytes);
    if (std::holds_alternative<Value>(binary))
        return binary;
    // A text may begin with the binary form's magic.
    ReadResult text = readTextForms(bytes);
    return std::holds_alternative<Value>(text) ? text : binary;
}

} // namespace platform::plist
