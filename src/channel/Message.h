#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <variant>

// What the two processes of korvel-today, and a further start of it, say to each other: docs/messages.md. A
// message is a packet of a local socket: fields with a zero byte between them, the first of which names the
// message. Texts are bytes other than zero; numbers are decimal digits.
namespace channel {

// Stated by the extension when it is ready. The centre rejects any other.
inline constexpr int protocolVersion = 2;

// A longer packet is malformed, and so is a text of more than a quarter of that.
inline constexpr std::size_t longestPacket = 4096;

// From the centre to the extension.
struct Show {
    // A screen's name; empty for the one that the panel was last on, or that a Wayland compositor
    // chooses.
    std::string screen;
    // Of whoever asked, by which the desktop gives the focus; empty if there is none.
    std::string activationToken;
    // As soon as the user turns to another window.
    bool hidesOnFocusLoss = false;
    static constexpr std::string_view packetName = "show";
    static auto fields(auto& message) {
        return std::tie(message.screen, message.activationToken, message.hidesOnFocusLoss);
    }
    bool operator==(const Show&) const = default;
};
struct Hide {
    static constexpr std::string_view packetName = "hide";
    static auto fields(auto&) { return std::tie(); }
    bool operator==(const Hide&) const = default;
};
// Ends the extension once nothing that the user has chosen is pending. The end of the connection means the
// same.
struct Quit {
    static constexpr std::string_view packetName = "quit";
    static auto fields(auto&) { return std::tie(); }
    bool operator==(const Quit&) const = default;
};
struct Motion {
    bool isReduced = false; // whether the user prefers that nothing moves
    static constexpr std::string_view packetName = "motion";
    static auto fields(auto& message) { return std::tie(message.isReduced); }
    bool operator==(const Motion&) const = default;
};
// A file of a finance program that can be connected; an answer to FindSources, which has one for each file.
struct Source {
    int number = 0;      // by which ConnectSource names it
    std::string program; // its name, as people know it
    std::string path;
    static constexpr std::string_view packetName = "source";
    static auto fields(auto& message) { return std::tie(message.number, message.program, message.path); }
    bool operator==(const Source&) const = default;
};
// The answer to ConnectSource where the file is not connected, or not shown.
struct SourceFault {
    int number = 0;
    std::string reason; // a sentence in English
    static constexpr std::string_view packetName = "source-fault";
    static auto fields(auto& message) { return std::tie(message.number, message.reason); }
    bool operator==(const SourceFault&) const = default;
};

// From the extension to the centre.
struct Ready {
    int version = 0;
    static constexpr std::string_view packetName = "ready";
    static auto fields(auto& message) { return std::tie(message.version); }
    bool operator==(const Ready&) const = default;
};
struct Shown { // the panel is painted
    static constexpr std::string_view packetName = "shown";
    static auto fields(auto&) { return std::tie(); }
    bool operator==(const Shown&) const = default;
};
struct Closed { // the panel is hidden
    static constexpr std::string_view packetName = "closed";
    static auto fields(auto&) { return std::tie(); }
    bool operator==(const Closed&) const = default;
};
struct Counts { // of all transactions of the list, also those beyond the shown count
    int overdue = 0;
    int dueToday = 0; // due later today
    static constexpr std::string_view packetName = "counts";
    static auto fields(auto& message) { return std::tie(message.overdue, message.dueToday); }
    bool operator==(const Counts&) const = default;
};
// Told when the panel is hidden, and again when it has changed.
struct Pending { // whether a choice of the user is still to be carried out
    bool isPending = false;
    static constexpr std::string_view packetName = "pending";
    static auto fields(auto& message) { return std::tie(message.isPending); }
    bool operator==(const Pending&) const = default;
};
// The extension is to be replaced by another: something that it reads is a file or folder now that it may not
// read.
struct Restart {
    static constexpr std::string_view packetName = "restart";
    static auto fields(auto&) { return std::tie(); }
    bool operator==(const Restart&) const = default;
};
struct OpenUrl {
    std::string url;
    static constexpr std::string_view packetName = "open";
    static auto fields(auto& message) { return std::tie(message.url); }
    bool operator==(const OpenUrl&) const = default;
};
// There is no list; the panel shows what it waits for, and would offer files.
struct FindSources {
    static constexpr std::string_view packetName = "find-sources";
    static auto fields(auto&) { return std::tie(); }
    bool operator==(const FindSources&) const = default;
};
// The user has chosen a file. That its list is there is the answer.
struct ConnectSource {
    int number = 0;
    static constexpr std::string_view packetName = "connect-source";
    static auto fields(auto& message) { return std::tie(message.number); }
    bool operator==(const ConnectSource&) const = default;
};

// From a further start to the centre that runs already.
struct Command {
    std::string name; // an action of the application
    std::string activationToken;
    static constexpr std::string_view packetName = "command";
    static auto fields(auto& message) { return std::tie(message.name, message.activationToken); }
    bool operator==(const Command&) const = default;
};
// The answer: the command is carried out.
struct Done {
    static constexpr std::string_view packetName = "done";
    static auto fields(auto&) { return std::tie(); }
    bool operator==(const Done&) const = default;
};

using ToExtension = std::variant<Show, Hide, Quit, Motion, Source, SourceFault>;
using FromExtension =
    std::variant<Ready, Shown, Closed, Counts, Pending, Restart, OpenUrl, FindSources, ConnectSource>;
using FromFurtherStart = std::variant<Command>;
using ToFurtherStart = std::variant<Done>;

// The packet of a message. Absent where it would be malformed: a text that is too long or holds a zero byte,
// a negative number.
template <class Messages>
[[nodiscard]] std::optional<std::string> packetOf(const Messages& message);

// Reads a packet. Absent where it is malformed or belongs to another direction.
template <class Messages>
[[nodiscard]] std::optional<Messages> messageOf(std::string_view packet);

extern template std::optional<std::string> packetOf(const ToExtension&);
extern template std::optional<std::string> packetOf(const FromExtension&);
extern template std::optional<std::string> packetOf(const FromFurtherStart&);
extern template std::optional<std::string> packetOf(const ToFurtherStart&);
extern template std::optional<ToExtension> messageOf(std::string_view);
extern template std::optional<FromExtension> messageOf(std::string_view);
extern template std::optional<FromFurtherStart> messageOf(std::string_view);
extern template std::optional<ToFurtherStart> messageOf(std::string_view);

} // namespace channel
