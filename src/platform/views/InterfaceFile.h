#pragma once

#include "platform/views/View.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

// A description of views, compiled into the program and found by its name. Making one gives its top-level
// views with their outlets connected, each told to awakeFromNib.
class InterfaceFile final {
public:
    using TopLevelObjects = std::vector<std::shared_ptr<View>>;
    using Maker = std::function<TopLevelObjects()>;

    // The file of a name, or null if there is no such file.
    [[nodiscard]] static std::optional<InterfaceFile> named(const QString& name);

    // Adds a file to those that are found. A second one of a name replaces the first.
    static void add(const QString& name, Maker maker);

    [[nodiscard]] TopLevelObjects instantiate() const { return maker_(); }

private:
    friend class InterfaceFileOverride;

    explicit InterfaceFile(Maker maker)
        : maker_(std::move(maker)) {}

    Maker maker_;
};

// Another file of a name, or none with an empty maker, for as long as it lives: the faults of a bundle in
// tests.
class InterfaceFileOverride final {
public:
    InterfaceFileOverride(QString name, InterfaceFile::Maker maker);
    ~InterfaceFileOverride();
    InterfaceFileOverride(const InterfaceFileOverride&) = delete;
    InterfaceFileOverride& operator=(const InterfaceFileOverride&) = delete;

private:
    QString name_;
    InterfaceFile::Maker replaced_;
};

} // namespace platform
