#include "ctl/check/SettingsCheck.h"

#include "ctl/check/Access.h"
#include "ctl/check/ListFile.h"
#include "platform/plist/Writer.h"

#include <optional>
#include <string>
#include <string_view>

namespace ctl {

namespace plist = platform::plist;

namespace {

constexpr ListFaults settingsFaults = {Fault::SettingsUnreadable, Fault::SettingsNoList,
                                       Fault::SettingsExpand, Fault::SettingsNoXmlForm};

void checkInteger(const plist::Dictionary& settings, const char* key, const CheckedContainer& container,
                  Findings& findings) {
    const plist::Value* value = settings.find(key);
    if (value && !value->integer())
        findings.add(Fault::SettingOfOtherKind, {container.settings, std::nullopt, key},
                     "the value is " + std::string(nameOfKind(*value)) + " and no integer");
}

// How many folders a key leads down from the container at its end; nothing if it leads out on its way.
std::optional<int> depthOf(std::string_view key) {
    int depth = 0;
    while (!key.empty()) {
        const std::size_t slash = key.find('/');
        const std::string_view component = key.substr(0, slash);
        key.remove_prefix(slash == key.npos ? key.size() : slash + 1);
        if (component == "..")
            --depth;
        else if (!component.empty() && component != ".")
            ++depth;
        if (depth < 0)
            return std::nullopt;
    }
    return depth;
}

void checkAccountKey(const plist::Value* value, const CheckedContainer& container, Findings& findings) {
    const Place place{container.settings, std::nullopt, "account_pk"};
    const bool hasText = value && (value->string() || value->integer() || value->real() || value->boolean());
    if (value && !hasText) {
        findings.add(Fault::AccountKeyUnusable, place,
                     "the value is " + std::string(nameOfKind(*value)) +
                         " and no string, so that \"-\" is used");
        return;
    }
    if (value && !value->string())
        findings.add(Fault::SettingOfOtherKind, place,
                     "the value is " + std::string(nameOfKind(*value)) + " and no string; it is read as \"" +
                         container.accountKey + "\"");
    const std::string& key = container.accountKey;
    if (key.find('\0') != std::string::npos)
        findings.add(Fault::AccountKeyUnusable, place, "the key holds a NUL, which no file's name can");
    else if (const std::optional<int> depth = depthOf(key); !depth)
        findings.add(Fault::AccountKeyLeadsOut, place, "the key leads out of the container: \"" + key + '"');
    else if (*depth != 1 || key.find('/') != std::string::npos)
        findings.add(Fault::AccountKeyNoName, place, "the key is no single name: \"" + key + '"');
}

} // namespace

void checkSettings(const CheckedContainer& container, Findings& findings) {
    if (const std::optional<std::string> refusal = refusalToReplace(container.settings))
        findings.add(Fault::SettingsNotReplaceable, {container.settings},
                     "the file cannot be replaced: " + *refusal);
    const std::optional<ListFile> file = readListFile(container.settings, settingsFaults, findings);
    if (!file)
        return;
    const plist::Dictionary* settings = file->root.dictionary();
    if (!settings) {
        findings.add(Fault::SettingsNoDictionary, {container.settings},
                     "the root is " + std::string(nameOfKind(file->root)) + " and no dictionary");
        return;
    }
    checkInteger(*settings, "show_transactions_count", container, findings);
    checkInteger(*settings, "notification_days_count", container, findings);
    checkAccountKey(settings->find("account_pk"), container, findings);
    if (container.hidesList)
        findings.add(Fault::ListHidden, {container.settings, std::nullopt, "show_transactions_count"},
                     "the count is negative");
    checkValues(*file, plist::writeXml(file->root) ? Writable::Yes : Writable::No, settingsFaults, findings);
}

} // namespace ctl
