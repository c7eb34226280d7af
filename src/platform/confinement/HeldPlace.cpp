#include "platform/confinement/HeldPlace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace platform {

HeldPlace::HeldPlace(std::string path)
    : path_(std::move(path))
    , file_(open(path_.c_str(), O_PATH | O_CLOEXEC)) {}

bool HeldPlace::isAnother() const {
    struct stat now {};
    struct stat then {};
    if (stat(path_.c_str(), &now) != 0)
        return false;
    return !file_.isOpen() || fstat(file_.number(), &then) != 0 || then.st_dev != now.st_dev ||
           then.st_ino != now.st_ino;
}

bool HeldPlace::isOutOfReach() const {
    return isAnother() && !OpenFile(open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)).isOpen();
}

} // namespace platform
