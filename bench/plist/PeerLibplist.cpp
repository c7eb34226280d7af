#include "Feed.h"

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>

namespace {

std::string textOf(plist_t record, const char* key) {
    std::uint64_t size = 0;
    const char* const text = plist_get_string_ptr(plist_dict_get_item(record, key), &size);
    return {text, size};
}

bool truthOf(plist_t record, const char* key) {
    std::uint8_t value = 0;
    plist_get_bool_val(plist_dict_get_item(record, key), &value);
    return value != 0;
}

Feed walk(plist_t root) {
    if (!root)
        std::abort();
    Feed feed;
    plist_array_iter position = nullptr;
    plist_array_new_iter(root, &position);
    plist_t record = nullptr;
    for (plist_array_next_item(root, position, &record); record;
         plist_array_next_item(root, position, &record)) {
        double date = 0;
        plist_get_real_val(plist_dict_get_item(record, "date"), &date);
        feed.push_back({date, textOf(record, "name"), textOf(record, "image"), textOf(record, "amount"),
                        truthOf(record, "income"), truthOf(record, "expense"), textOf(record, "planpk"),
                        truthOf(record, "single")});
    }
    std::free(position);
    plist_free(root);
    return feed;
}

} // namespace

Feed readLibplistXml(std::string& bytes) {
    plist_t root = nullptr;
    plist_from_xml(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
    return walk(root);
}

Feed readLibplistBinary(std::string& bytes) {
    plist_t root = nullptr;
    plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
    return walk(root);
}
