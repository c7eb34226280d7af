#pragma once

#include "platform/views/InterfaceFile.h"

#include <QString>

#include <optional>
#include <utility>

namespace support {

// Another interface file of a name, or none with an empty maker, for as long as it lives: a bundle's faults.
class InterfaceFileOverride final {
public:
    InterfaceFileOverride(QString name, platform::InterfaceFile::Maker maker)
        : name_(std::move(name))
        , replaced_(platform::InterfaceFile::named(name_)) {
        platform::InterfaceFile::add(name_, std::move(maker));
    }
    ~InterfaceFileOverride() {
        platform::InterfaceFile::Maker maker;
        if (replaced_)
            maker = [file = *replaced_] { return file.instantiate(); };
        platform::InterfaceFile::add(name_, std::move(maker));
    }
    InterfaceFileOverride(const InterfaceFileOverride&) = delete;
    InterfaceFileOverride& operator=(const InterfaceFileOverride&) = delete;

private:
    QString name_;
    std::optional<platform::InterfaceFile> replaced_;
};

} // namespace support
