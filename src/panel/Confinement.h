#pragma once

#include "platform/confinement/HeldPlace.h"

#include <optional>
#include <system_error>

namespace panel {

// What the panel's process gives up before it reads the container, so that a fault in what reads it reaches
// nothing else of the user's (docs/security.md). Where a kernel lacks a part of it, that part is left out.
class Confinement final {
public:
    // Leaves the process the container, what a desktop program reads, and of the files that are open the
    // standard streams, terminals for writing alone, and one more. To be called before there is a second
    // thread, so before the toolkit starts. After an error the process must not read the container.
    [[nodiscard]] std::error_code begin(int keptDescriptor);

    // Forbids new connections, once those to the display and to assistive programs are made.
    [[nodiscard]] static std::error_code forbidConnections();

    // Whether something stands where what was left to this process was: the container is another folder now,
    // or the time zone's file another one, which cannot be read. A new process has the new one.
    [[nodiscard]] bool isOutdated() const;

private:
    bool areFilesConfined_ = false;
    // Open, so that no other file gets their numbers.
    std::optional<platform::HeldPlace> container_;
    std::optional<platform::HeldPlace> timeZoneFile_;
};

} // namespace panel
