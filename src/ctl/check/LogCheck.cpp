#include "ctl/check/LogCheck.h"

#include "ctl/check/Access.h"
#include "ctl/check/ListFile.h"
#include "platform/plist/RecordEditor.h"
#include "platform/storage/Files.h"

#include <cstdint>
#include <optional>
#include <string>
#include <system_error>

namespace ctl {

namespace plist = platform::plist;

namespace {

constexpr ListFaults logFaults = {Fault::LogUnreadable, Fault::LogNoList, Fault::LogExpands,
                                  Fault::LogNoXmlForm};

bool canBeAppendedTo(std::string_view bytes) {
    plist::RecordEditor editor(bytes, {});
    while (editor.next()) {
    }
    if (!editor.isSound())
        return false;
    editor.append(plist::Value(plist::Dictionary()));
    return editor.finish().has_value();
}

bool isOfKind(const plist::Value* value, plist::Kind kind) {
    return value && value->kind() == kind;
}

// What is wrong with a record of the log, and the key that it is about.
struct RecordFault {
    std::string key;
    std::string wrong;
};

std::optional<RecordFault> faultOf(const plist::Value& value) {
    const plist::Dictionary* record = value.dictionary();
    if (!record)
        return RecordFault{{}, "the record is no dictionary"};
    struct Key {
        const char* name;
        plist::Kind kind;
        const char* kindName;
    };
    for (const Key& key :
         {Key{"type", plist::Kind::Integer, "integer"}, Key{"pk", plist::Kind::String, "string"},
          Key{"date", plist::Kind::Real, "real"}, Key{"param", plist::Kind::Integer, "integer"}})
        if (!isOfKind(record->find(key.name), key.kind))
            return RecordFault{key.name, std::string("there is no ") + key.kindName + " under the key"};
    const plist::Value& type = *record->find("type");
    for (const std::int64_t known : {1, 2, 3})
        if (type == plist::Value(known))
            return std::nullopt;
    return RecordFault{"type", "the number is none of 1, 2 and 3"};
}

} // namespace

void checkLog(const CheckedContainer& container, Findings& findings) {
    if (container.log.find('\0') != std::string::npos)
        return; // the account's key is a finding of the settings
    if (const std::optional<std::string> refusal = refusalToReplace(container.log))
        findings.add(Fault::LogNotReplaceable, {container.log}, "the file cannot be replaced: " + *refusal);
    if (platform::isFolder(container.log))
        return;
    if (const auto bytes = platform::readFile(container.log); bytes && bytes->empty()) {
        findings.add(Fault::LogEmptyFile, {container.log}, "the file is empty and so no property list");
        return;
    }
    const std::optional<ListFile> file = readListFile(container.log, logFaults, findings);
    if (!file)
        return;
    const plist::Array* records = file->root.array();
    if (!records) {
        findings.add(Fault::LogNoArray, {container.log},
                     "the root is " + std::string(nameOfKind(file->root)) + " and no array");
        return;
    }
    for (std::size_t place = 0; place < records->size(); ++place)
        if (const std::optional<RecordFault> fault = faultOf((*records)[place]))
            findings.add(Fault::LogRecordUnknown, {container.log, place + 1, fault->key}, fault->wrong);
    checkValues(*file, canBeAppendedTo(file->bytes) ? Writable::Yes : Writable::No, logFaults, findings);
}

} // namespace ctl
