// A clock that a test sets, for a program that is started with this library in LD_PRELOAD. KORVEL_TEST_CLOCK
// names a folder: its file "offset" holds the seconds (a double) by which the clock is ahead of the system's,
// and a byte in its pipe "set" cancels the timers of the real-time clock, as the kernel does when the clock
// is set. Such a timer does not expire.
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace {

int timer = -1;

template <typename Function>
Function* next(Function*, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

std::string path(const char* name) {
    return std::string(std::getenv("KORVEL_TEST_CLOCK")) + "/" + name;
}

double offset() {
    static const void* const mapped = [] {
        const int file = open(path("offset").c_str(), O_RDONLY | O_CLOEXEC);
        void* const bytes = mmap(nullptr, sizeof(double), PROT_READ, MAP_SHARED, file, 0);
        close(file);
        return bytes;
    }();
    double seconds = 0;
    std::memcpy(&seconds, mapped, sizeof seconds);
    return seconds;
}

// A program that confines itself may not open the file any more.
[[gnu::constructor]] void mapOffset() {
    offset();
}

} // namespace

extern "C" {

int clock_gettime(clockid_t clock, timespec* time) noexcept {
    static auto* const real = next(&clock_gettime, "clock_gettime");
    const int result = real(clock, time);
    if (result == 0 && clock == CLOCK_REALTIME)
        time->tv_sec += static_cast<time_t>(offset());
    return result;
}

int timerfd_create(int clock, int flags) noexcept {
    static auto* const real = next(&timerfd_create, "timerfd_create");
    if (clock != CLOCK_REALTIME)
        return real(clock, flags);
    return timer = open(path("set").c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
}

int timerfd_settime(int file, int flags, const itimerspec* value, itimerspec* old) noexcept {
    static auto* const real = next(&timerfd_settime, "timerfd_settime");
    return file == timer ? 0 : real(file, flags, value, old);
}

ssize_t read(int file, void* bytes, size_t size) {
    static auto* const real = next(&read, "read");
    const ssize_t count = real(file, bytes, size);
    if (file != timer || count <= 0)
        return count;
    errno = ECANCELED;
    return -1;
}

} // extern "C"
