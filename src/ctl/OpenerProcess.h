#pragma once

#include "platform/storage/OpenFile.h"

#include <optional>
#include <sys/types.h>

namespace ctl {

// A second process, from before this one is confined, that opens the host application in its place: what the
// confined process started would be confined as well. It can be asked for one request only, which is chosen
// before, and it ends with this object, or with the process in whatever way that ends.
//
// As long as this object lives, Workspace::openUrl asks that process. Where it could not be made, no URL can
// be opened.
class OpenerProcess final {
public:
    explicit OpenerProcess(const char* request);
    ~OpenerProcess();
    OpenerProcess(const OpenerProcess&) = delete;
    OpenerProcess& operator=(const OpenerProcess&) = delete;

private:
    [[nodiscard]] bool open() const;

    std::optional<platform::OpenFile> socket_;
    pid_t process_ = -1;
};

} // namespace ctl
