#pragma once

#include "platform/plist/Reader.h"
#include "platform/plist/xml/XmlScanner.h"

#include <optional>
#include <string>
#include <string_view>

// The XML form, from UTF-8 text to values.
namespace platform::plist {

// How many arrays and dictionaries may be nested in one another. A <plist> inside another element counts as
// well.
constexpr unsigned deepestNesting = 512;

// A dictionary whose single key is this one, with a number, stands for an archive's reference.
constexpr std::string_view uidKey = "CF$UID";

[[nodiscard]] ReadResult readXml(std::string_view text);

// The UID that a dictionary stands for, if it is of that shape.
[[nodiscard]] std::optional<Uid> uidOf(const Dictionary& dictionary);

// Reads the values of one text, element by element. Every operation gives false after a fault, which the
// scanner has noted; `depth` is the number of containers around the element.
class XmlValueReader final {
public:
    explicit XmlValueReader(XmlScanner& scanner)
        : scanner_(scanner) {}

    // Reads the rest of an element whose start tag was taken. With no value to fill it only checks the
    // element, just as strictly.
    [[nodiscard]] bool read(XmlElement element, unsigned depth, Value* value);

    // These are the steps of read().
    [[nodiscard]] bool readString(XmlElement element, std::string& decoded, std::string_view& string) {
        string = {};
        return element.isEmpty || (scanner_.takeText(decoded, string) && scanner_.takeCloseTag(element.tag));
    }
    // Either as an empty tag or with its close tag.
    [[nodiscard]] bool readBoolean(XmlElement element, bool& value) {
        value = element.tag == XmlTag::True;
        return element.isEmpty || scanner_.takeCloseTag(element.tag);
    }
    [[nodiscard]] bool readReal(XmlElement element, double& value);
    [[nodiscard]] bool readInteger(XmlElement element, Integer& value);
    // The key that a start tag inside a dictionary is expected to begin.
    [[nodiscard]] bool readKey(XmlElement element, std::string& decoded, std::string_view& key) {
        if (element.tag != XmlTag::Key)
            return scanner_.failHere("A dictionary holds a value where a key is expected");
        return readString(element, decoded, key);
    }
    // The start tag of a key's value.
    [[nodiscard]] bool findValue(XmlElement& element) {
        const XmlScanner::Found found = scanner_.findElement(element);
        return found == XmlScanner::Found::Element ||
               (found == XmlScanner::Found::CloseTag && scanner_.failHere("A key has no value"));
    }
    // The start tag of the one value inside a <plist>; how deep the value stands, which the root's own
    // <plist> does not change.
    [[nodiscard]] bool enterPlist(XmlElement& element, unsigned& depth);
    // The end of a <plist> after its value.
    [[nodiscard]] bool leavePlist();
    // Whether a container may be so deep.
    [[nodiscard]] bool checkDepth(unsigned depth) {
        return depth <= deepestNesting || scanner_.failHere("Too many containers are nested");
    }

private:
    bool readPlist(unsigned depth, Value* value);
    bool readArray(unsigned depth, Value* value);
    bool readDictionary(unsigned depth, Value* value);
    bool readData(Value* value);
    bool readDate(Value* value);

    XmlScanner& scanner_;
    std::string decoded_;
};

} // namespace platform::plist
