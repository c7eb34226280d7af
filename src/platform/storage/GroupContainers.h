#pragma once

#include <optional>
#include <string>

namespace platform {

// The group containers: folders that the programs of an application group share, each named by the identifier
// of its group, in one folder of all containers.
class GroupContainers final {
public:
    // The folder of all containers: the one given with setFolder, else $KORVEL_GROUP_CONTAINERS, else
    // $XDG_DATA_HOME/group-containers, else ~/.local/share/group-containers. A variable that is empty, and a
    // relative $XDG_DATA_HOME, count as unset.
    [[nodiscard]] static std::string folder();

    // Replaces the folder of all containers; an empty path restores the one of the environment.
    static void setFolder(std::string folder);

    // The path of a group's container. Absent if the identifier is not a single file name ("", "..", "a/b")
    // or the container does not exist. Never makes a container.
    [[nodiscard]] static std::optional<std::string> containerForGroup(const std::string& identifier);

    // The path that the container of a group has or would have.
    [[nodiscard]] static std::string containerPath(const std::string& identifier);
};

} // namespace platform
