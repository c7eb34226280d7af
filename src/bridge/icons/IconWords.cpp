#include "bridge/icons/IconWords.h"

#include "bridge/icons/FoldedText.h"

#include <algorithm>

namespace bridge {

namespace {

// What is before the mark, which is removed together with it.
std::string_view takeUpTo(std::string_view& text, char mark) {
    const auto end = std::min(text.find(mark), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

std::string_view trimmed(std::string_view text) {
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}

QStringView firstTwo(QStringView text) {
    return text.first(2);
}

} // namespace

IconWords::IconWords(std::string_view table) {
    while (!table.empty())
        addLine(takeUpTo(table, '\n'));
    std::ranges::stable_sort(patterns_, {}, [](const Pattern& pattern) { return firstTwo(pattern.text); });
}

void IconWords::addLine(std::string_view line) {
    if (line.empty() || line.starts_with('#'))
        return;
    if (line == "--") {
        firstPart_ = glyphs_.size();
        return;
    }
    const std::string_view glyph = takeUpTo(line, '\t');
    takeUpTo(line, '\t'); // the language, which only people need
    auto found = std::ranges::find(glyphs_, glyph);
    const auto rank = static_cast<std::size_t>(found - glyphs_.begin());
    if (found == glyphs_.end())
        glyphs_.push_back(glyph);
    while (!line.empty())
        addPattern(trimmed(takeUpTo(line, ',')), rank);
}

void IconWords::addPattern(std::string_view word, std::size_t rank) {
    QString text = foldedText(word);
    if (text.size() < 3)
        return; // no letter
    if (word.ends_with('*'))
        text.chop(1);
    if (word.starts_with('*'))
        text.remove(0, 1);
    if (text.size() > 1)
        patterns_.push_back({text, rank});
}

std::size_t IconWords::firstRank(QStringView folded) const {
    std::size_t first = glyphs_.size();
    for (QStringView rest = folded; rest.size() > 1; rest = rest.sliced(1)) {
        const auto alike = std::ranges::equal_range(
            patterns_, firstTwo(rest), {}, [](const Pattern& pattern) { return firstTwo(pattern.text); });
        for (const Pattern& pattern : alike)
            if (pattern.rank < first && rest.startsWith(pattern.text))
                first = pattern.rank;
    }
    return first;
}

std::optional<std::string_view> IconWords::glyphOf(std::string_view text) const {
    std::size_t rank = firstRank(foldedText(text));
    if (rank == glyphs_.size())
        return std::nullopt;
    if (rank < firstPart_)
        return glyphs_[rank];
    do {
        const auto level = text.rfind(':') + 1; // 0 where the text has only one
        const std::size_t ofLevel = firstRank(foldedText(text.substr(level)));
        if (ofLevel < glyphs_.size())
            return glyphs_[ofLevel];
        text = text.substr(0, std::max<std::size_t>(level, 1) - 1);
    } while (!text.empty());
    return glyphs_[rank]; // of a word that begins in one level and ends in the next
}

} // namespace bridge
