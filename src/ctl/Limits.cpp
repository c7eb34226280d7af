#include "ctl/Limits.h"

#include "ctl/Report.h"

#include <csignal>
#include <cstdlib>
#include <exception>
#include <new>
#include <stdexcept>
#include <string_view>
#include <unistd.h>

namespace ctl {

namespace {

void doNothing(int) {}

// Some functions of the toolkit that allocate are `noexcept`, so that a std::bad_alloc in them gets no
// further than here.
[[noreturn]] void endProcess() noexcept {
    try {
        if (const std::exception_ptr exception = std::current_exception())
            std::rethrow_exception(exception);
    } catch (const std::bad_alloc&) {
        _exit(reportNoMemory());
    } catch (const std::length_error&) {
        _exit(reportNoMemory());
    } catch (...) { // a fault of the program
    }
    std::abort();
}

} // namespace

void prepareForLimits() {
    // A signal that is ignored would stay so in the programs that this one starts; a handled one does not.
    struct sigaction action {};
    action.sa_handler = doNothing;
    sigaction(SIGXFSZ, &action, nullptr);
    std::set_terminate(endProcess);
}

int reportNoMemory() noexcept {
    constexpr std::string_view sentence = "korvel-todayctl: there is not enough memory\n";
    // Where even this cannot be written, the exit status tells.
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, sentence.data(), sentence.size());
    return Failed;
}

} // namespace ctl
