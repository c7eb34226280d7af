#include "support/Containers.h"

#include "platform/storage/GroupContainers.h"

#include <filesystem>

namespace support {

Containers::Containers(Container container) {
    if (container == Container::Present)
        std::filesystem::create_directory(folder_.path(identifier()));
    platform::GroupContainers::setFolder(folder_.path());
}

Containers::~Containers() {
    platform::GroupContainers::setFolder({});
}

std::string Containers::identifier() {
    return KORVEL_FULL_EDITION_GROUP;
}

std::string Containers::settingsName() {
    return "Library/Preferences/" + identifier() + ".plist";
}

void Containers::writeFeed(std::string_view text) const {
    write("notifications.xml", text);
}

void Containers::writeSettings(std::string_view text) const {
    write(settingsName(), text);
}

void Containers::write(std::string_view nameInContainer, std::string_view text) const {
    folder_.write(identifier() + "/" + std::string(nameInContainer), text);
}

std::string Containers::read(std::string_view nameInContainer) const {
    return folder_.read(identifier() + "/" + std::string(nameInContainer));
}

bool Containers::has(std::string_view nameInContainer) const {
    return folder_.has(identifier() + "/" + std::string(nameInContainer));
}

std::string Containers::path(std::string_view nameInContainer) const {
    const std::string container = folder_.path(identifier());
    return nameInContainer.empty() ? container : container + "/" + std::string(nameInContainer);
}

} // namespace support
