#pragma once

#include "ctl/check/DesktopHandlers.h"
#include "ctl/check/Finding.h"

namespace ctl {

// Which programs answer the host application's URLs, as each of the openers looks them up.
struct UrlHandlers {
    [[nodiscard]] static UrlHandlers lookUp();

    HandlerSearch ofGio;
    HandlerSearch ofXdgOpen;
};

// Whether the desktop has an opener, and for it a program that answers the host application's URLs. Opens no
// file.
void checkUrlHandler(const UrlHandlers& handlers, Findings& findings);

} // namespace ctl
