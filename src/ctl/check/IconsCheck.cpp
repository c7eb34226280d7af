#include "ctl/check/IconsCheck.h"

#include "ctl/check/Access.h"
#include "ctl/check/PngFile.h"
#include "exchange/Text.h"
#include "platform/storage/Files.h"

#include <algorithm>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

namespace ctl {

namespace {

// A name of so many UTF-16 code units or more is a picture's, a shorter one a glyph's.
constexpr qsizetype pictureNameLength = 23;

struct IconFault {
    Fault ofGlyph;
    std::string wrong;
};

std::optional<IconFault> faultOf(const std::string& file) {
    std::error_code error;
    const std::optional<std::string> bytes = platform::readFile(file, &error);
    if (!bytes && error == std::errc::no_such_file_or_directory)
        return IconFault{Fault::GlyphMissing, "there is no icon " + file};
    if (!bytes)
        return IconFault{Fault::GlyphMissing,
                         "the icon " + file + " cannot be read: " + refusalOf(file, error)};
    switch (pngState(*bytes)) {
    case PngState::Whole:
        return std::nullopt;
    case PngState::Broken:
        return IconFault{Fault::GlyphBroken, "the icon " + file + " is a broken PNG file, or one cut short"};
    case PngState::TooLarge:
        return IconFault{Fault::GlyphTooLarge, "the icon " + file + " has too many pixels"};
    case PngState::OtherFormat:
        return IconFault{Fault::GlyphNoPng, "the icon " + file + " is a picture, but no PNG file"};
    case PngState::NoPicture:
        break;
    }
    return IconFault{Fault::GlyphBroken, "the icon " + file + " is no picture"};
}

Fault findingOf(const IconFault& fault, bool isGlyph, const IconUse& use) {
    if (fault.ofGlyph == Fault::GlyphNoPng)
        return Fault::GlyphNoPng;
    if (!isGlyph)
        return Fault::PictureNotShown;
    return use.isShown ? fault.ofGlyph : Fault::GlyphNotReady;
}

} // namespace

void checkIcons(const CheckedContainer& container, const IconUses& uses, Findings& findings) {
    std::vector<std::pair<std::size_t, std::string>> names; // in the order of the records
    for (const auto& [name, use] : uses)
        names.emplace_back(use.record, name);
    std::sort(names.begin(), names.end());
    for (const auto& [record, name] : names) {
        const std::string file = platform::pathByAppending(container.icons, name + ".png");
        const bool isGlyph = exchange::textFromUtf8(name).size() < pictureNameLength;
        if (const std::optional<IconFault> fault = faultOf(file))
            findings.add(findingOf(*fault, isGlyph, uses.at(name)), {container.feed, record, "image"},
                         fault->wrong);
    }
}

} // namespace ctl
