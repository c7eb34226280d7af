#pragma once

#include "platform/plist/DictionaryBuilder.h"
#include "platform/plist/Reader.h"
#include "platform/plist/xml/XmlScanner.h"

#include <optional>
#include <string>

// The XML form, from UTF-8 text to values.
namespace platform::plist {

// How many arrays and dictionaries may be nested in one another. A <plist> inside another element counts as
// well.
constexpr unsigned deepestNesting = 512;

[[nodiscard]] ReadResult readXml(std::string_view text);

// Reads the values of one text, element by element: what readXml() and the reader of records have in common.
class XmlValueReader final {
public:
    explicit XmlValueReader(XmlScanner& scanner)
        : scanner_(scanner) {}

    // Reads the rest of an element whose start tag was taken, `depth` containers deep, or with no value to
    // fill only checks it, just as strictly. False after a fault, which the scanner has noted.
    [[nodiscard]] bool read(XmlElement element, unsigned depth, Value* value);

    // The single steps, for a start tag that was no empty one.
    [[nodiscard]] bool readReal(double& value);
    [[nodiscard]] bool readInteger(Integer& value);
    // Their contents, without the close tag.
    [[nodiscard]] bool takeReal(double& value);
    [[nodiscard]] bool takeInteger(Integer& value);
    // Either, as the platform's number.
    [[nodiscard]] bool readNumber(XmlElement element, double& value);
    // A key whose start tag was taken, empty or not.
    [[nodiscard]] bool takeKey(XmlElement element, std::string& buffer, XmlText& text);
    // How deep a <plist>'s value stands: the root's own tag is no nesting, one inside another element is.
    [[nodiscard]] static unsigned depthInPlist(XmlElement inner, unsigned depth) {
        return inner.tag == XmlTag::Plist || depth > 0 ? depth + 1 : depth;
    }
    [[nodiscard]] bool checkDepth(unsigned depth);
    // True or false, either as an empty tag or with its close tag.
    [[nodiscard]] bool finishBoolean(XmlElement element);
    // After the one value inside a <plist>.
    [[nodiscard]] bool finishPlist();

private:
    bool readPlist(unsigned depth, Value* value);
    bool readArray(unsigned depth, Value* value);
    bool readDictionary(unsigned depth, Value* value);
    bool readText(XmlElement element, Value* value);
    bool readData(Value* value);
    bool readDate(Value* value);
    bool readEntry(XmlElement element, unsigned depth, DictionaryBuilder* dictionary);

    XmlScanner& scanner_;
    std::string scratch_;
    RecentKeys recentKeys_;
};

// What a dictionary with the single key `CF$UID` and a number stands for: an archive's reference.
[[nodiscard]] std::optional<Uid> uidOf(const Dictionary& dictionary);

} // namespace platform::plist
