#pragma once

#include <optional>
#include <string>

namespace support {

// Sets an environment variable, or unsets it if the value is nullptr, for as long as this object lives.
class EnvironmentVariable final {
public:
    EnvironmentVariable(std::string name, const char* value);
    EnvironmentVariable(std::string name, const std::string& value)
        : EnvironmentVariable(std::move(name), value.c_str()) {}
    ~EnvironmentVariable();
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

    void set(const char* value) const;

private:
    std::string name_;
    std::optional<std::string> before_;
};

} // namespace support
