#include "Feed.h"

#include <pugixml.hpp>

#include <cstdio>
#include <cstdlib>

namespace {

bool isTrue(const pugi::xml_node& value) {
    return std::string_view(value.name()) == "true";
}

void take(FeedRecord& record, std::string_view key, const pugi::xml_node& value) {
    if (key == "date")
        record.date = std::strtod(value.child_value(), nullptr);
    else if (key == "name")
        record.name = value.child_value();
    else if (key == "image")
        record.image = value.child_value();
    else if (key == "amount")
        record.amount = value.child_value();
    else if (key == "income")
        record.income = isTrue(value);
    else if (key == "expense")
        record.expense = isTrue(value);
    else if (key == "planpk")
        record.planpk = value.child_value();
    else if (key == "single")
        record.single = isTrue(value);
}

class Document final : public Writable {
public:
    explicit Document(const std::string& bytes) {
        document_.load_buffer(bytes.data(), bytes.size(), pugi::parse_full);
    }
    void write(const std::string& path) override {
        const std::string temporary = path + ".new";
        if (!document_.save_file(temporary.c_str()) || std::rename(temporary.c_str(), path.c_str()) != 0)
            std::abort();
    }

private:
    pugi::xml_document document_;
};

} // namespace

Feed readPugixml(std::string& bytes) {
    Feed feed;
    pugi::xml_document document;
    if (!document.load_buffer_inplace(bytes.data(), bytes.size()))
        std::abort();
    for (const pugi::xml_node& dictionary : document.child("plist").child("array").children()) {
        FeedRecord& record = feed.emplace_back();
        for (pugi::xml_node key = dictionary.first_child(); key; key = key.next_sibling()) {
            const pugi::xml_node value = key.next_sibling();
            take(record, key.child_value(), value);
            key = value;
        }
    }
    return feed;
}

Writable* pugixmlWritable(const std::string& bytes) {
    return new Document(bytes);
}

std::string editPugixml(const std::string& bytes, std::size_t place) {
    struct Text final : pugi::xml_writer {
        std::string bytes;
        void write(const void* piece, std::size_t size) override {
            bytes.append(static_cast<const char*>(piece), size);
        }
    };
    pugi::xml_document document;
    if (!document.load_buffer(bytes.data(), bytes.size(), pugi::parse_full))
        std::abort();
    pugi::xml_node array = document.child("plist").child("array");
    pugi::xml_node record = array.first_child();
    for (std::size_t i = 0; i < place; ++i)
        record = record.next_sibling();
    array.remove_child(record);
    Text text;
    document.save(text, "\t");
    return text.bytes;
}
