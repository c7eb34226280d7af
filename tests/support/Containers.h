#pragma once

#include "support/TemporaryFolder.h"

#include <string>
#include <string_view>

namespace support {

// The container of the full edition's group in a temporary folder, which is the folder of all containers for
// as long as this object lives.
class Containers final {
public:
    enum class Container { Present, Absent };

    explicit Containers(Container container = Container::Present);
    ~Containers();
    Containers(const Containers&) = delete;
    Containers& operator=(const Containers&) = delete;

    [[nodiscard]] static std::string identifier();
    [[nodiscard]] static std::string settingsName(); // the path of the settings in the container

    // Write a file of the container, a property list in any form or other bytes.
    void writeFeed(std::string_view text) const;
    void writeSettings(std::string_view text) const;
    void write(std::string_view nameInContainer, std::string_view text) const;

    [[nodiscard]] std::string read(std::string_view nameInContainer) const;
    [[nodiscard]] bool has(std::string_view nameInContainer) const;
    [[nodiscard]] std::string path(std::string_view nameInContainer = "") const;
    // The folder of all containers.
    [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }

private:
    TemporaryFolder folder_;
};

} // namespace support
