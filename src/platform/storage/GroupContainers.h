#pragma once

#include <optional>
#include <string>

namespace platform {

// The folder in which every application group has its container, a folder named by the group's identifier.
class GroupContainers final {
public:
    // The folder given with setFolder, else $KORVEL_GROUP_CONTAINERS, else $XDG_DATA_HOME/group-containers
    // (~/.local/share where that is unset or not absolute, as freedesktop's base directories have it). Empty
    // variables count as unset.
    [[nodiscard]] static std::string folder();

    // Puts a folder in force (--containers); an empty one brings the environment's back.
    static void setFolder(std::string folder);

    // The container of a group; none where its identifier is empty or no single name ("..", "a/b"), or its
    // folder is missing or no folder. Never makes one.
    [[nodiscard]] static std::optional<std::string> containerForGroup(const std::string& identifier);

    // Where the container of a group is or would be.
    [[nodiscard]] static std::string containerPath(const std::string& identifier);
};

} // namespace platform
