#pragma once

#include "platform/plist/Value.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace platform {

// A suite of settings that the programs of one application group share: a property list whose root is a
// dictionary, CONTAINER/Library/Preferences/IDENTIFIER.plist. It is read when it is opened. What is set is
// seen at once by this object and written by synchronize; unsaved settings are gone with the object.
class SharedDefaults final {
public:
    // None for an empty identifier, and for a file that was read and is no dictionary. A missing container or
    // file, or one that permission forbids, opens as an empty suite.
    [[nodiscard]] static std::optional<SharedDefaults> open(const std::string& identifier);

    // The setting as an integer (see settingAsInteger): a real is truncated (3.7 is 3), a boolean is 1 or 0,
    // a text's leading integer counts ("12abc" is 12; "abc" and "0x10" are 0); beyond 64 bits it clamps, NaN
    // is 0. Absent or of another kind: 0.
    [[nodiscard]] std::int64_t integerForKey(const std::string& key) const;

    // The setting as text (see settingAsText): a number gives its plain rendering, a boolean "1" or "0".
    // Absent, or an array, dictionary, data or date: none.
    [[nodiscard]] std::optional<std::string> stringForKey(const std::string& key) const;

    // The setting as it stands.
    [[nodiscard]] const plist::Value* valueForKey(const std::string& key) const;
    [[nodiscard]] const plist::Dictionary& values() const { return values_; }

    void setString(const std::string& key, std::string value);
    void setDouble(const std::string& key, double value);
    void setInteger(const std::string& key, std::int64_t value);

    // Reads the file again and writes what was set since the last time, keeping every other key of the file
    // as it stands; a file that holds it all already is left alone. Library/Preferences is made inside an
    // existing container. False where nothing is written and what is pending stays pending: without a
    // container; where the file is there and cannot be read or is no dictionary, since its other keys would
    // be lost (the settings read before then stay); and on any failure to write.
    bool synchronize();

private:
    explicit SharedDefaults(std::string identifier);

    void set(const std::string& key, plist::Value value);
    bool writePending(const std::string& container);

    std::string identifier_;
    plist::Dictionary values_;                    // as read, with what is pending laid over
    std::map<std::string, plist::Value> pending_; // set and not yet written
};

} // namespace platform
