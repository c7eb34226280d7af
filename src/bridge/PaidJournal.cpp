#include "bridge/PaidJournal.h"

#include "bridge/Feed.h"
#include "platform/storage/Files.h"
#include "platform/storage/StorageError.h"

#include <filesystem>
#include <system_error>

namespace bridge {

namespace {

constexpr std::string_view tagsStart = "    ; plan: ";
constexpr std::string_view tagsMiddle = ", paid-of: ";

std::string uncheckedFile(const std::string& path) {
    return path + ".unchecked";
}

std::string sentenceOf(const std::string& path, const std::error_code& error) {
    return platform::isMade(error) ? "" : path + ": " + error.message();
}

std::string replace(const std::string& path, std::string_view bytes) {
    return sentenceOf(path, platform::replaceFile(path, bytes));
}

std::string readText(const std::string& path, std::string& text) {
    std::error_code error;
    if (auto bytes = platform::readFile(path, &error))
        text = std::move(*bytes);
    return sentenceOf(path, error);
}

// Puts the text before an unchecked change back.
std::string takeBack(const std::string& path) {
    std::string text;
    std::string fault = readText(uncheckedFile(path), text);
    if (fault.empty())
        fault = replace(path, text);
    std::error_code error;
    if (fault.empty())
        std::filesystem::remove(uncheckedFile(path), error);
    return fault.empty() ? sentenceOf(path, error) : fault;
}

bool isOf(std::string_view line, std::string_view key, const std::string& day) {
    const std::string end = std::string(tagsMiddle) + day;
    if (!line.starts_with(tagsStart) || !line.ends_with(end) || line.size() < tagsStart.size() + end.size())
        return false;
    line.remove_prefix(tagsStart.size());
    line.remove_suffix(end.size());
    return portableKey(line) == key;
}

} // namespace

const std::string_view emptyPaidJournal = "; What was paid in the panel. korvel-today-bridge writes this "
                                          "file; include it at the end of a journal.\n"
                                          "decimal-mark .\n";

std::string textOfPayment(const Entry& entry, Day nominal, Day paid) {
    std::string text = '\n' + textOfDay(paid) + " *";
    if (!entry.description.empty())
        text += ' ' + entry.description;
    text += '\n' + std::string(tagsStart) + entry.plan + std::string(tagsMiddle) + textOfDay(nominal) + '\n';
    for (const std::string& posting : entry.postings)
        text += "    " + posting + '\n';
    return text;
}

std::optional<std::string> withoutPayment(const std::string& text, std::string_view key, Day nominal) {
    const std::string day = textOfDay(nominal);
    // Each transaction from its empty line up to the next one.
    for (std::size_t start = text.find("\n\n"); start != text.npos;) {
        const std::size_t next = text.find("\n\n", start + 1);
        const std::size_t end = next == text.npos ? text.size() : next + 1;
        const std::size_t tags = text.find('\n', start + 2);
        if (tags != text.npos && tags < end) {
            const std::string_view rest(text.data() + tags + 1, end - tags - 1);
            if (isOf(rest.substr(0, rest.find('\n')), key, day))
                return text.substr(0, start + 1) + text.substr(end);
        }
        start = next;
    }
    return std::nullopt;
}

std::string preparePaidJournal(const std::string& path) {
    if (platform::fileExists(uncheckedFile(path)))
        return takeBack(path);
    return platform::fileExists(path) ? "" : replace(path, emptyPaidJournal);
}

std::string changePaidJournal(const std::string& path, std::string_view text, const JournalCheck& check) {
    std::string before;
    std::string fault = readText(path, before);
    if (fault.empty())
        fault = replace(uncheckedFile(path), before);
    if (fault.empty())
        fault = replace(path, text);
    if (fault.empty())
        fault = check();
    std::error_code error;
    if (fault.empty())
        std::filesystem::rename(uncheckedFile(path), path + '~', error);
    else if (platform::fileExists(uncheckedFile(path)))
        if (const std::string second = takeBack(path); !second.empty())
            fault += "; and " + second;
    return fault.empty() ? sentenceOf(path, error) : fault;
}

} // namespace bridge
