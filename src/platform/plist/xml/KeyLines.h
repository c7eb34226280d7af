#pragma once

#include "platform/plist/Value.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform::plist {

// The order in which a dictionary's entries are written, with the lines of their keys and the beginnings of
// those of their values. It is made for one dictionary and serves all that have the same keys in the same
// places, as the records of a list mostly do.
class KeyLines final {
public:
    [[nodiscard]] bool serves(const Dictionary& dictionary) const;
    void make(const Dictionary& dictionary, std::size_t indent);

    struct Line {
        std::size_t entry = 0;  // its place in the dictionary
        Kind kind = Kind::Null; // of the value whose opening tag is prepared
        std::size_t start = 0;
        std::size_t keySize = 0;     // of the key's line
        std::size_t openingSize = 0; // of that line and the prepared beginning
    };
    [[nodiscard]] const std::vector<Line>& lines() const { return lines_; }
    [[nodiscard]] std::string_view key(const Line& line) const {
        return {text_.data() + line.start, line.keySize};
    }
    [[nodiscard]] std::string_view opening(const Line& line) const {
        return {text_.data() + line.start, line.openingSize};
    }

private:
    std::shared_ptr<const Dictionary::Keys> keys_;
    std::vector<Line> lines_; // in the order of writing
    std::string text_;
};

} // namespace platform::plist
