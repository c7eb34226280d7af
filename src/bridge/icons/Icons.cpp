#include "bridge/icons/Icons.h"

#include "bridge/icons/GlyphFiles.h"
#include "bridge/icons/IconWords.h"

#include <algorithm>

namespace bridge {

namespace {

constexpr std::string_view incomeIcon = "salary";
constexpr std::string_view transferIcon = "transfer";
constexpr std::string_view otherIcon = "planned";

} // namespace

std::string_view iconFor(const Plan& plan) {
    static const IconWords words(glyphWords());
    if (plan.direction == Direction::Transfer)
        return transferIcon;
    for (const std::string_view text :
         {std::string_view(plan.category), std::string_view(plan.name), std::string_view(plan.payee)})
        if (const auto glyph = words.glyphOf(text))
            return *glyph;
    return plan.direction == Direction::Income ? incomeIcon : otherIcon;
}

std::string_view iconFile(std::string_view name) {
    const auto files = glyphFiles();
    const auto file = std::ranges::find(files, name, &GlyphFile::name);
    return file == files.end() ? std::string_view() : file->png;
}

} // namespace bridge
