#include "ctl/check/ListFile.h"

#include "ctl/Portability.h"
#include "ctl/check/Access.h"
#include "ctl/check/ValueFaults.h"
#include "platform/plist/ExpandedSize.h"
#include "platform/plist/Reader.h"
#include "platform/storage/Files.h"

#include <algorithm>
#include <system_error>
#include <utility>
#include <variant>

namespace ctl {

namespace plist = platform::plist;

namespace {

std::string placeInFile(const plist::Error& error) {
    return error.line > 0 ? "line " + std::to_string(error.line) : "offset " + std::to_string(error.offset);
}

// By either of the measures that those who write lists take.
bool expandsTooFar(const ListFile& file) {
    plist::ExpandedSize size;
    size.add(file.root);
    return plist::isTooLarge(size.expanded(), std::min(file.bytes.size(), size.distinct()));
}

// Whether the list is edited in its source, where a carriage return is a character reference that stays one.
bool keepsCarriageReturns(std::string_view bytes) {
    const std::size_t start = bytes.find_first_not_of(" \t\n");
    return start != bytes.npos && bytes[start] == '<' && bytes.find('\r') == bytes.npos;
}

// The elements of a root array are records.
Place placeOf(const ListFile& file, const ValuePath& path) {
    const std::size_t* record = path.empty() ? nullptr : std::get_if<std::size_t>(&path.front());
    if (!record)
        return {file.path, std::nullopt, keyOfPath(path)};
    return {file.path, *record + 1, keyOfPath(ValuePath(path.begin() + 1, path.end()))};
}

// Why a list cannot be written back.
void checkXmlForm(const ListFile& file, const ListFaults& faults, Findings& findings) {
    bool isCauseKnown = expandsTooFar(file);
    if (isCauseKnown)
        findings.add(faults.expands, {file.path},
                     "texts and containers are shared so often that the list is too large when written out");
    ValueInspection inspection([&](const ValuePath& path, std::string_view wrong) {
        findings.add(faults.noXmlForm, placeOf(file, path), std::string(wrong));
        isCauseKnown = true;
    });
    inspection.inspect(file.root);
    if (!isCauseKnown)
        findings.add(faults.noXmlForm, {file.path}, "the list has no XML form");
}

} // namespace

std::optional<ListFile> readListFile(const std::string& path, const ListFaults& faults, Findings& findings) {
    std::error_code error;
    std::optional<std::string> bytes = platform::readFile(path, &error);
    if (!bytes) {
        if (error != std::errc::no_such_file_or_directory)
            findings.add(faults.unreadable, {path}, "the file cannot be read: " + refusalOf(path, error));
        return std::nullopt;
    }
    plist::ReadResult result = plist::read(*bytes);
    if (const auto* fault = std::get_if<plist::Error>(&result)) {
        findings.add(faults.noList, {path},
                     "the file is no property list: " + placeInFile(*fault) + ": " + fault->message);
        return std::nullopt;
    }
    return ListFile{path, *std::move(bytes), std::get<plist::Value>(std::move(result))};
}

std::string_view nameOfKind(const plist::Value& value) {
    switch (value.kind()) {
    case plist::Kind::Null:
        return "a null";
    case plist::Kind::Boolean:
        return "a boolean";
    case plist::Kind::Integer:
        return "an integer";
    case plist::Kind::Real:
        return "a real";
    case plist::Kind::Date:
        return "a date";
    case plist::Kind::Uid:
        return "a UID";
    case plist::Kind::String:
        return "a string";
    case plist::Kind::Data:
        return "data";
    case plist::Kind::Array:
        return "an array";
    case plist::Kind::Dictionary:
        return "a dictionary";
    case plist::Kind::Set:
        return "a set";
    case plist::Kind::ForeignDictionary:
        return "a dictionary with a key that is no string";
    }
    return {};
}

void checkValues(const ListFile& file, Writable writable, const ListFaults& faults, Findings& findings) {
    if (writable == Writable::No)
        checkXmlForm(file, faults, findings);
    const bool keepsReturns = keepsCarriageReturns(file.bytes);
    findUnportable(file.root, [&](const Unportable& found) {
        if (!keepsReturns || found.what.find("carriage return") == std::string::npos)
            findings.add(Fault::NotPortable, placeOf(file, found.path), "the value " + found.what);
        return true;
    });
}

} // namespace ctl
