#include "platform/views/InterfaceFile.h"

#include <QHash>

#include <utility>

namespace platform {

namespace {

QHash<QString, InterfaceFile::Maker>& files() {
    static QHash<QString, InterfaceFile::Maker> all;
    return all;
}

} // namespace

std::optional<InterfaceFile> InterfaceFile::named(const QString& name) {
    const Maker maker = files().value(name);
    if (!maker)
        return std::nullopt;
    return InterfaceFile(maker);
}

void InterfaceFile::add(const QString& name, Maker maker) {
    files().insert(name, std::move(maker));
}

} // namespace platform
