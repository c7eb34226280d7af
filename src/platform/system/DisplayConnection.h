#pragma once

#include <functional>

namespace platform {

// What becomes of the connection to the display. Qt says it in its messages alone, whose handler this is.
//
// A display that cannot be reached while the application is made ends the process with status 1 and one line
// on standard error. Qt's own messages are printed where QT_LOGGING_RULES is set and silenced otherwise.
class DisplayConnection final {
public:
    // Called before the application is made.
    static void watch();
    // The application is made, and so the display was reached.
    static void setReached();

    // Right after the display has gone Qt ends the process. The handler is called before, on the main thread.
    // It may take two seconds.
    static void setBeforeEnd(std::function<void()> handler);
};

} // namespace platform
