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

InterfaceFileOverride::InterfaceFileOverride(QString name, InterfaceFile::Maker maker)
    : name_(std::move(name))
    , replaced_(std::exchange(files()[name_], std::move(maker))) {}

InterfaceFileOverride::~InterfaceFileOverride() {
    files()[name_] = std::move(replaced_);
}

} // namespace platform
