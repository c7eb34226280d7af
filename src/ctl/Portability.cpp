#include "ctl/Portability.h"

#include <cmath>
#include <unordered_set>
#include <utility>

namespace ctl {

namespace plist = platform::plist;

namespace {

// Seconds from 2001-01-01 00:00 UTC to the start of the year 1, and to that of the year 10000.
constexpr double firstSecond = -63113904000;
constexpr double endOfSeconds = 252423993600;

std::string codePointName(unsigned code) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string name = "U+";
    for (const unsigned shift : {12U, 8U, 4U, 0U})
        name += digits[code >> shift & 0xFU];
    return name;
}

bool startsWithSurrogate(std::string_view text) {
    return text.size() > 1 && text[0] == '\xED' && static_cast<unsigned char>(text[1]) >= 0xA0;
}

bool startsWithNoncharacter(std::string_view text) {
    return text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF");
}

// Why a text (UTF-8, with lone surrogates) is not portable; empty if it is.
std::string faultOf(std::string_view text) {
    for (; !text.empty(); text.remove_prefix(1)) {
        const auto byte = static_cast<unsigned char>(text[0]);
        if (byte == '\r')
            return "holds a carriage return, which XML turns into a line feed";
        if (byte < 0x20 && byte != '\n' && byte != '\t')
            return "holds " + codePointName(byte) + ", which XML forbids";
        if (startsWithSurrogate(text))
            return "holds a lone surrogate, which XML forbids";
        if (startsWithNoncharacter(text))
            return "holds " + codePointName(text[2] == '\xBE' ? 0xFFFE : 0xFFFF) + ", which XML forbids";
    }
    return {};
}

// The XML form holds whole seconds, rounded down.
std::string faultOf(plist::Date date) {
    const double second = std::floor(date.seconds);
    return second >= firstSecond && second < endOfSeconds ? "" : "is a date outside the years 1 to 9999";
}

class Search final {
public:
    explicit Search(const std::function<bool(const Unportable&)>& report)
        : report_(report) {}

    // Whether the search goes on.
    bool visit(const plist::Value& value) {
        if (const plist::SharedString text = value.sharedString())
            return isKnownText(*text) || report(faultOf(*text));
        if (const plist::Date* date = value.date())
            return report(faultOf(*date));
        if (const plist::Array* array = value.array())
            return isKnown(value, array) || visitElements(*array);
        if (const plist::Dictionary* dictionary = value.dictionary())
            return isKnown(value, dictionary) || visitEntries(*dictionary);
        return true;
    }

private:
    bool report(std::string what) { return what.empty() || report_({path_, std::move(what)}); }

    bool isKnown(const plist::Value& value, const void* content) {
        return value.isShared() && !known_.insert(content).second;
    }

    // A text that is long may be named so often that looking at it each time takes too long.
    bool isKnownText(const std::string& text) {
        constexpr std::size_t shortText = 64;
        return text.size() > shortText && !known_.insert(&text).second;
    }

    bool visitElements(const plist::Array& array) {
        for (std::size_t place = 0; place < array.size(); ++place) {
            path_.emplace_back(place);
            const bool goesOn = visit(array[place]);
            path_.pop_back();
            if (!goesOn)
                return false;
        }
        return true;
    }

    bool visitEntries(const plist::Dictionary& dictionary) {
        for (const auto& [key, value] : dictionary) {
            path_.emplace_back(std::string_view(key));
            const bool goesOn = (isKnownText(key) || report(faultOfKey(key))) && visit(value);
            path_.pop_back();
            if (!goesOn)
                return false;
        }
        return true;
    }

    static std::string faultOfKey(std::string_view key) {
        const std::string fault = faultOf(key);
        return fault.empty() ? fault : "is a key that " + fault;
    }

    const std::function<bool(const Unportable&)>& report_;
    ValuePath path_;
    std::unordered_set<const void*> known_;
};

} // namespace

std::string describe(const ValuePath& path) {
    std::string words;
    const char* separator = "";
    for (const auto& step : path) {
        words += separator;
        separator = ", ";
        if (const auto* key = std::get_if<std::string_view>(&step)) {
            words.append("\"").append(*key).append("\"");
        } else {
            const bool isRecord = &step == &path.front();
            words += isRecord ? "record " : "element ";
            words += std::to_string(std::get<std::size_t>(step) + 1);
            separator = isRecord ? ": " : ", ";
        }
    }
    return words;
}

void findUnportable(const plist::Value& value, const std::function<bool(const Unportable&)>& report) {
    Search(report).visit(value);
}

std::optional<std::string> describeUnportable(const plist::Value& value) {
    std::optional<std::string> sentence;
    findUnportable(value, [&](const Unportable& found) {
        const std::string place = describe(found.path);
        sentence = (place.empty() ? "the value" : place) + " " + found.what;
        return false;
    });
    return sentence;
}

} // namespace ctl
