#pragma once

#include "platform/plist/Value.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <system_error>

namespace platform {

// The settings that the programs of one application group share: a property list with a dictionary as its
// root, CONTAINER/Library/Preferences/IDENTIFIER.plist. The file is read when the settings are opened. New
// values are visible in this object at once and are written by synchronize; otherwise they are lost with the
// object.
class SharedDefaults final {
public:
    // Opens the settings of a group. Absent for an empty identifier and for a file whose root is not a
    // dictionary. If the container or the file does not exist or may not be read, the settings are empty.
    [[nodiscard]] static std::optional<SharedDefaults> open(const std::string& identifier);

    // The path that the file of a group's settings has or would have.
    [[nodiscard]] static std::string file(const std::string& identifier);

    // The setting as an integer, converted by settingAsInteger. 0 if it is absent.
    [[nodiscard]] std::int64_t integerForKey(const std::string& key) const;

    // The setting as a string, converted by settingAsText. Absent also for an array, a dictionary, data or a
    // date.
    [[nodiscard]] std::optional<std::string> stringForKey(const std::string& key) const;

    // The unconverted value; nullptr if it is absent.
    [[nodiscard]] const plist::Value* valueForKey(const std::string& key) const;
    [[nodiscard]] const plist::Dictionary& values() const { return values_; }

    void setString(const std::string& key, std::string value);
    void setDouble(const std::string& key, double value);
    void setInteger(const std::string& key, std::int64_t value);

    // Reads the file again and writes the values that were set since the last call. All other keys of the
    // file are kept; the file is not written if it has these values already. Library/Preferences is made in
    // an existing container. The container is locked meanwhile (see FolderLock) if there is anything to
    // write. Returns an error, and keeps the values for the next call, if the container does not exist, if
    // the lock is required and another program holds it, if the file exists but cannot be read or is not a
    // dictionary (its other keys would be lost), or if writing fails; also one that says that the values are
    // written but may be lost in a crash (see unsynced).
    [[nodiscard]] std::error_code save();

    // The same; whether the file now has these values.
    bool synchronize();

private:
    explicit SharedDefaults(std::string identifier);

    void set(const std::string& key, plist::Value value);
    [[nodiscard]] std::error_code writePending(const std::string& container);

    std::string identifier_;
    plist::Dictionary values_;                    // those of the file and the pending ones
    std::map<std::string, plist::Value> pending_; // set but not written
};

} // namespace platform
