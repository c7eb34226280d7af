#include "platform/storage/StorageError.h"

#include <string>

namespace platform {

namespace {

class StorageCategory final : public std::error_category {
    [[nodiscard]] const char* name() const noexcept override { return "storage"; }
    [[nodiscard]] std::string message(int value) const override {
        switch (static_cast<StorageError>(value)) {
        case StorageError::LockHeld:
            return "another program has kept the container locked for too long";
        case StorageError::NoXmlForm:
            return "a value has no XML form";
        case StorageError::NotADictionary:
            return "its root is no dictionary";
        }
        return "unknown error";
    }
};

// Its values are those of errno.
class UnsyncedCategory final : public std::error_category {
    [[nodiscard]] const char* name() const noexcept override { return "unsynced"; }
    [[nodiscard]] std::string message(int value) const override {
        return "written, but perhaps not safe yet: " + std::generic_category().message(value);
    }
    [[nodiscard]] std::error_condition default_error_condition(int value) const noexcept override {
        return std::generic_category().default_error_condition(value);
    }
};

const UnsyncedCategory unsyncedCategory;
const StorageCategory storageCategory;

} // namespace

std::error_code make_error_code(StorageError error) {
    return {static_cast<int>(error), storageCategory};
}

std::error_code unsynced(const std::error_code& cause) {
    return cause ? std::error_code(cause.value(), unsyncedCategory) : cause;
}

bool isMade(const std::error_code& result) {
    return !result || result.category() == unsyncedCategory;
}

std::error_code worseOf(const std::error_code& a, const std::error_code& b) {
    if (!isMade(a) || !b)
        return a;
    return !isMade(b) || !a ? b : a;
}

} // namespace platform
