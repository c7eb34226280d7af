#include "platform/plist/RandomList.h"

#include "platform/plist/Writer.h"

#include <array>
#include <string_view>

using namespace platform::plist;

namespace {

template <std::size_t N>
std::string_view oneOf(std::mt19937& random, const std::array<std::string_view, N>& choices) {
    return choices[random() % N];
}

} // namespace

std::string RandomList::space() {
    if (!oneIn(4))
        return "\n\t";
    return std::string(oneOf<6>(random_, {"", " ", "\r\n", "<!-- <dict> -->", "<?pi?>", "\t \n"}));
}

std::string RandomList::characters() {
    static constexpr std::array<std::string_view, 16> pieces = {"a",
                                                                "Rent ",
                                                                "&lt;",
                                                                "&amp;",
                                                                "&#65;",
                                                                "&#x1F600;",
                                                                "<![CDATA[<x>&y;]]>",
                                                                "\xC3\xA9",
                                                                "&gt;b",
                                                                "\xE2\x82\xAC",
                                                                "\xF0\x9F\x98\x80",
                                                                "]]>",
                                                                "&apos;",
                                                                "date",
                                                                "\xEF\xBB\xBF",
                                                                "long enough"};
    std::string text;
    for (std::size_t i = below(5); i > 0; --i)
        text += oneOf(random_, pieces);
    return text;
}

std::string RandomList::number() {
    static constexpr std::array<std::string_view, 14> texts = {
        "<real>0</real>",          "<real>-0.0</real>",         "<real>1710082800.123</real>",
        "<real>nan</real>",        "<real>-inf</real>",         "<real>1e400</real>",
        "<integer>0</integer>",    "<integer>-7</integer>",     "<integer>18446744073709551615</integer>",
        "<integer>0x1F</integer>", "<real>&#49;.5</real>",      "<integer>9007199254740993</integer>",
        "<real>4.9e-324</real>",   "<real><![CDATA[2]]></real>"};
    return std::string(oneOf(random_, texts));
}

std::string RandomList::value(int depth) {
    switch (below(depth > 3 ? 7 : 11)) {
    case 0:
        return number();
    case 1:
        return "<true/>";
    case 2:
        return oneIn(2) ? "<false></false>" : "<false />";
    case 3:
        return "<string>" + characters() + "</string >";
    case 4:
        return oneIn(2) ? "<string/>" : "<key>" + characters() + "</key>";
    case 5:
        return "<date>2024-03-10T15:00:00Z</date>";
    case 6:
        return "<data>AAEC Aw==</data>";
    case 7:
        return record(depth + 1);
    case 8:
        return "<array>" + value(depth + 1) + space() + "</array>";
    case 9:
        return "<plist>" + space() + value(depth + 1) + "</plist>";
    default:
        return oneIn(2) ? "<array/>" : "<dict/>";
    }
}

std::string RandomList::key() {
    static constexpr std::array<std::string_view, 12> keys = {"date",  "name",         "planpk", "income",
                                                              "other", "CF$UID",       "amount", "d&#97;te",
                                                              "",      "expens&#101;", "namX",   "dat"};
    return std::string(oneOf(random_, keys));
}

std::string RandomList::record(int depth) {
    std::string text = "<dict>";
    for (std::size_t i = below(6); i > 0; --i)
        text += space() + "<key>" + key() + "</key>" + space() + value(depth);
    return text + space() + "</dict>";
}

std::string RandomList::xml() {
    std::string text = oneIn(2) ? "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist>\n" : "";
    const int plists = static_cast<int>(below(3));
    for (int i = 0; i < plists; ++i)
        text += "<plist version=\"1.0\">" + space();
    text += oneIn(20) ? value(0) : "<array>";
    for (std::size_t i = below(6); i > 0; --i)
        text += space() + (oneIn(8) ? value(1) : record(1));
    text += space() + "</array>";
    for (int i = 0; i < plists; ++i)
        text += space() + "</plist>";
    return text + (oneIn(4) ? "trailing <text" : "\n");
}

std::string RandomList::broken(std::string text) {
    for (std::size_t i = 1 + below(3); i > 0 && !text.empty(); --i) {
        const std::size_t at = below(text.size());
        switch (below(3)) {
        case 0:
            text[at] = static_cast<char>(below(256));
            break;
        case 1:
            text.erase(at, 1 + below(8));
            break;
        default:
            text.insert(at, text.substr(below(text.size()), below(12)));
        }
    }
    return text;
}

std::string RandomList::written() {
    Array records;
    for (std::size_t count = below(6); count > 0; --count) {
        Dictionary record;
        for (const char* const key : {"amount", "date", "income", "name", "planpk", "CF$UID", "rest"})
            switch (below(9)) {
            case 0:
                record.set(key, Value(static_cast<double>(below(900)) / 7 - 50));
                break;
            case 1:
                record.set(key, Value(static_cast<std::int64_t>(below(100)) - 50));
                break;
            case 2:
                record.set(key, Value(below(2) == 0));
                break;
            case 3:
                record.set(key, Value(std::string(below(40), 'x') + (below(2) == 0 ? "<&>" : "")));
                break;
            case 4:
                if (below(10) == 0)
                    record.set(key, Value(Array{Value("inner")}));
                break;
            default:
                record.set(key, Value("text"));
            }
        records.emplace_back(record);
        if (below(10) == 0)
            records.emplace_back("no record");
    }
    return *writeXml(Value(records));
}
