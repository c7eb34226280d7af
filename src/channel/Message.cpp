#include "channel/Message.h"

#include <charconv>
#include <utility>
#include <vector>

namespace channel {

namespace {

constexpr std::size_t longestText = longestPacket / 4;

bool append(std::string& packet, const std::string& text) {
    packet.append(1, '\0').append(text);
    return text.size() <= longestText && text.find('\0') == std::string::npos;
}

bool append(std::string& packet, int number) {
    packet.append(1, '\0').append(std::to_string(number));
    return number >= 0;
}

bool append(std::string& packet, bool value) {
    return append(packet, value ? 1 : 0);
}

bool read(std::string_view field, std::string& text) {
    text = field;
    return field.size() <= longestText;
}

bool read(std::string_view field, int& number) {
    if (field.empty() || field.front() < '0' || field.front() > '9')
        return false;
    const char* const end = field.data() + field.size();
    const auto [stop, error] = std::from_chars(field.data(), end, number);
    return error == std::errc() && stop == end;
}

bool read(std::string_view field, bool& value) {
    value = field == "1";
    return value || field == "0";
}

std::vector<std::string_view> fieldsOf(std::string_view packet) {
    std::vector<std::string_view> fields;
    for (;;) {
        const std::size_t end = packet.find('\0');
        fields.push_back(packet.substr(0, end));
        if (end == std::string_view::npos)
            return fields;
        packet.remove_prefix(end + 1);
    }
}

template <class Message>
std::optional<Message> read(const std::vector<std::string_view>& texts) {
    Message message;
    const bool isWellFormed = std::apply(
        [&](auto&... fields) {
            std::size_t next = 0;
            return texts.size() == 1 + sizeof...(fields) && texts.front() == Message::packetName &&
                   (read(texts[++next], fields) && ...);
        },
        Message::fields(message));
    return isWellFormed ? std::optional(std::move(message)) : std::nullopt;
}

template <class Messages, std::size_t... index>
std::optional<Messages> readAny(const std::vector<std::string_view>& fields, std::index_sequence<index...>) {
    std::optional<Messages> found;
    const auto take = [&](auto message) {
        if (message)
            found = std::move(*message);
    };
    (take(read<std::variant_alternative_t<index, Messages>>(fields)), ...);
    return found;
}

} // namespace

template <class Messages>
std::optional<std::string> packetOf(const Messages& message) {
    return std::visit(
        [](const auto& alternative) {
            std::string packet(alternative.packetName);
            const bool isWellFormed =
                std::apply([&](const auto&... fields) { return (append(packet, fields) && ...); },
                           alternative.fields(alternative));
            return isWellFormed && packet.size() <= longestPacket ? std::optional(std::move(packet))
                                                                  : std::nullopt;
        },
        message);
}

template <class Messages>
std::optional<Messages> messageOf(std::string_view packet) {
    if (packet.size() > longestPacket)
        return std::nullopt;
    return readAny<Messages>(fieldsOf(packet), std::make_index_sequence<std::variant_size_v<Messages>>());
}

template std::optional<std::string> packetOf(const ToExtension&);
template std::optional<std::string> packetOf(const FromExtension&);
template std::optional<std::string> packetOf(const FromFurtherStart&);
template std::optional<std::string> packetOf(const ToFurtherStart&);
template std::optional<ToExtension> messageOf(std::string_view);
template std::optional<FromExtension> messageOf(std::string_view);
template std::optional<FromFurtherStart> messageOf(std::string_view);
template std::optional<ToFurtherStart> messageOf(std::string_view);

} // namespace channel
