#pragma once

#include <span>
#include <string_view>

namespace bridge {

// A glyph as a PNG file, two pixels to a point of a row's icon.
struct GlyphFile {
    std::string_view name; // of its drawing, glyphs/NAME.svg
    std::string_view png;
};

// All glyphs, by name. They are compiled in: cmake/DrawGlyphs.cpp draws them when the program is built.
[[nodiscard]] std::span<const GlyphFile> glyphFiles();

// The content of words.tsv.
[[nodiscard]] std::string_view glyphWords();

} // namespace bridge
