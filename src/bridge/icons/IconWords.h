#pragma once

#include <QString>

#include <optional>
#include <string_view>
#include <vector>

namespace bridge {

// Which glyph the words of a text mean. The table that it is made of has lines of a glyph's name, a language
// and words, with a tab between them; empty lines and those that begin with "#" say nothing. The words are
// set apart by commas. Each is one word or several in a row; "*" before or behind it says that the word in
// the text may begin or go on with other letters. Texts are compared as foldedText gives them.
//
// A text may be a category with those above it, "Leisure:Books". A glyph of the table's first part, which the
// line
// "--" ends, counts wherever its word is; of the others the one of the last level that has any. Between
// glyphs of the same standing the first of the table counts.
class IconWords final {
public:
    explicit IconWords(std::string_view table); // which has to outlive this object

    // The name of the glyph.
    [[nodiscard]] std::optional<std::string_view> glyphOf(std::string_view text) const;

private:
    struct Pattern {
        QString text;     // with a space where a word has to begin or end; never of a single character
        std::size_t rank; // of its glyph
    };

    // The first glyph in the table that a folded text means, or as many as there are.
    [[nodiscard]] std::size_t firstRank(QStringView folded) const;
    void addLine(std::string_view line);
    void addPattern(std::string_view word, std::size_t rank);

    std::vector<std::string_view> glyphs_; // in the order of the table
    std::size_t firstPart_ = 0;            // how many of them its first part has
    std::vector<Pattern> patterns_;        // by their first two characters
};

} // namespace bridge
