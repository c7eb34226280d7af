#pragma once

#include "center/BusService.h"

#include <functional>
#include <string>
#include <vector>

namespace center {

// Starts programs by the user's service manager (systemd), each as a service of its own. Such a program
// inherits nothing of this process: no system call filter, no "no new privileges", no namespace, no limit,
// none of its open files. A scope would not do: its processes are forked by this one. Main thread only.
class TransientService final {
public:
    enum class Outcome {
        Started,
        Refused, // no manager, or one that did not start anything
        Unknown  // no answer came; it may have started
    };

    explicit TransientService(const QDBusConnection& bus);

    // Starts a program, by its path, with these arguments, the name it is called by first, which it gets as
    // they are. Its standard streams are on /dev/null. Its environment is the manager's, in which the
    // variables that tell of the session (environmentOfSession) are this process's. Waits for nothing.
    void start(const std::string& program, const std::vector<std::string>& arguments,
               std::function<void(Outcome)> done);

    // The assignments of this process's environment that a program of the session goes by: the display, the
    // buses, folders, language and toolkit settings. Only those that a manager takes: in UTF-8, without
    // control characters.
    [[nodiscard]] static std::vector<std::string> environmentOfSession();

private:
    BusService manager_;
};

} // namespace center
