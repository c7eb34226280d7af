#include "support/Environment.h"

#include <cstdlib>
#include <utility>

namespace support {

EnvironmentVariable::EnvironmentVariable(std::string name, const char* value)
    : name_(std::move(name)) {
    if (const char* before = std::getenv(name_.c_str()))
        before_ = before;
    set(value);
}

EnvironmentVariable::~EnvironmentVariable() {
    set(before_ ? before_->c_str() : nullptr);
}

void EnvironmentVariable::set(const char* value) const {
    if (value)
        setenv(name_.c_str(), value, 1);
    else
        unsetenv(name_.c_str());
}

} // namespace support
