#pragma once

#include "support/PrivateBus.h"

#include <sys/types.h>

// A session of one test program: an X server without a screen and a session bus. Both are made before the
// application and named by the environment.
class TrayDesktop final {
public:
    TrayDesktop();
    ~TrayDesktop();
    TrayDesktop(const TrayDesktop&) = delete;
    TrayDesktop& operator=(const TrayDesktop&) = delete;

    [[nodiscard]] static const TrayDesktop& current();
    [[nodiscard]] const support::PrivateBus& bus() const { return bus_; }

private:
    support::PrivateBus bus_;
    pid_t server_ = -1;
};
