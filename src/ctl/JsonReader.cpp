#include "ctl/JsonReader.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <sstream>
#include <unordered_set>
#include <utility>
#include <vector>

namespace ctl {

namespace plist = platform::plist;

namespace {

using Json = nlohmann::json;

constexpr std::size_t mostNested = 501;

JsonError errorAt(std::string_view text, std::size_t offset, std::string message) {
    const std::string_view before = text.substr(0, offset);
    const std::size_t lineStart = before.rfind('\n') + 1; // 0 on the first line, because npos + 1 is 0
    const auto lineFeeds = std::count(before.begin(), before.end(), '\n');
    return {static_cast<std::size_t>(lineFeeds) + 1, before.size() - lineStart + 1, std::move(message)};
}

// The library's message without its own statement of the place, and without the token, which may be long.
std::string messageOf(const std::string& what, const std::string& token) {
    std::string message = what.substr(std::min(what.find("syntax error"), what.size()));
    const std::string quotedToken = "; last read: '" + token + "'";
    if (const std::size_t at = message.find(quotedToken); at != std::string::npos)
        message.erase(at, quotedToken.size());
    return message;
}

// Builds the value from the events of the library's parser. Each event returns whether parsing goes on; the
// parser stops at the first error.
class Builder final : public nlohmann::json_sax<Json> {
public:
    // An empty text is parsed as a blank one: for it alone, version 3.11.3 of the library (Debian 13) has a
    // message that begins like no other.
    explicit Builder(std::string_view text)
        : text_(text)
        , stream_(text.empty() ? " " : std::string(text)) {}

    std::variant<plist::Value, JsonError> build() {
        Json::sax_parse(stream_, this);
        // The library takes a NUL for the end of the text. Within a string it has refused it.
        if (const std::size_t nul = text_.find('\0'); !error_ && nul != std::string_view::npos)
            fail(nul, "syntax error - a NUL follows the value");
        if (error_)
            return std::move(*error_);
        return std::move(root_);
    }

    bool null() override { return add(plist::Value()); }
    bool boolean(bool value) override { return add(plist::Value(value)); }
    bool number_integer(std::int64_t value) override { return add(plist::Value(value)); }
    bool number_unsigned(std::uint64_t value) override {
        const bool isLarge = value > static_cast<std::uint64_t>(INT64_MAX);
        return add(plist::Value(plist::Integer{value, isLarge}));
    }
    // The library also passes integers here that are out of the range of both integer types.
    bool number_float(double value, const std::string& digits) override {
        if (digits.find_first_not_of("-0123456789") == std::string::npos)
            return failOutOfRange();
        return add(plist::Value(value));
    }
    bool string(std::string& value) override { return add(plist::Value(std::move(value))); }
    bool binary(Json::binary_t&) override { return false; } // JSON has no such value

    bool start_object(std::size_t) override { return open(true); }
    bool start_array(std::size_t) override { return open(false); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(std::string& key) override {
        Container& object = open_.back();
        object.key = std::make_shared<const std::string>(std::move(key));
        if (!object.keys.insert(*object.key).second)
            return fail(position(), "the key \"" + *object.key + "\" is repeated");
        return true;
    }

    bool parse_error(std::size_t position, const std::string& token,
                     const Json::exception& exception) override {
        if (dynamic_cast<const Json::out_of_range*>(&exception))
            return failOutOfRange();
        return fail(position - 1, messageOf(exception.what(), token));
    }

private:
    // An array or object whose end has not been read.
    struct Container {
        bool isObject;
        plist::Array elements;
        std::vector<plist::Dictionary::Entry> entries;
        plist::SharedString key;                   // of the next entry
        std::unordered_set<std::string_view> keys; // of the entries and of the next one
    };

    bool add(plist::Value value) {
        if (open_.empty())
            root_ = std::move(value);
        else if (open_.back().isObject)
            open_.back().entries.push_back({std::move(open_.back().key), std::move(value)});
        else
            open_.back().elements.push_back(std::move(value));
        return true;
    }

    bool open(bool isObject) {
        if (open_.size() == mostNested)
            return fail(position() - 1, "the nesting is too deep");
        open_.push_back({isObject, {}, {}, {}, {}});
        return true;
    }

    bool close() {
        Container container = std::move(open_.back());
        open_.pop_back();
        if (!container.isObject)
            return add(plist::Value(std::move(container.elements)));
        // No key is there twice.
        return add(plist::Value(
            plist::Dictionary(std::move(container.entries), plist::Dictionary::Duplicates::KeepFirst)));
    }

    // The offset of the next byte that the parser reads.
    std::size_t position() {
        const auto offset = stream_.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in);
        return static_cast<std::size_t>(std::streamoff(offset));
    }

    // Behind the last digit: the parser has read one byte more unless the text ends there.
    bool failOutOfRange() {
        const std::size_t end = text_.find_last_of("0123456789", position() - 1) + 1;
        return fail(end, "the number is out of range");
    }

    bool fail(std::size_t offset, std::string message) {
        error_ = errorAt(text_, offset, std::move(message));
        return false;
    }

    std::string_view text_;
    std::istringstream stream_;   // of the same text; its position is that of the parser
    std::vector<Container> open_; // from the outermost to the innermost
    plist::Value root_;
    std::optional<JsonError> error_;
};

} // namespace

std::variant<plist::Value, JsonError> readJson(std::string_view text) {
    return Builder(text).build();
}

} // namespace ctl
