#pragma once

#include "center/BusService.h"
#include "center/TransientService.h"

#include <QString>

#include <optional>
#include <string_view>

namespace center {

// Opens URLs, and folders by their absolute paths, by the desktop's handlers, in such a way that the
// application that comes up is not confined as this process is. Nothing waits; what fails, fails silently.
class UrlOpener final {
public:
    enum class Way {
        Child,   // of a process that is not confined: as platform::Workspace does it
        Service, // of one that is: by the user's service manager; as a child where that refuses
        Portal   // in a Flatpak sandbox, which has neither a handler nor a manager: by the desktop's portal
    };

    UrlOpener(const QDBusConnection& bus, Way way);

    // False if nobody could be asked.
    bool open(const QString& url);

    // The way for this process.
    [[nodiscard]] static Way wayOfProcess();
    // Whether the text of /proc/self/status tells of "no new privileges" or of a system call filter, which
    // every child inherits.
    [[nodiscard]] static bool isConfined(std::string_view status);

private:
    bool openByService(const QString& url);
    bool openByPortal(const QString& url);

    // Only the one that the way takes; without a bus none.
    std::optional<TransientService> services_;
    std::optional<BusService> portal_;
    Way way_;
};

} // namespace center
