#include "Measure.h"

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

bool isCounted = false;
std::size_t inUse = 0;
std::size_t peak = 0;

double once(const Candidate& candidate) {
    candidate.prepare();
    const auto start = std::chrono::steady_clock::now();
    candidate.run();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

double leastOf(const Candidate& candidate, double seconds) {
    double least = std::numeric_limits<double>::infinity();
    double left = seconds * 1e9;
    once(candidate); // for all that only a first run finds, such as memory that is new
    do {
        const double time = once(candidate);
        least = std::min(least, time);
        left -= time;
    } while (left > 0);
    return least;
}

} // namespace

void* operator new(std::size_t size) {
    void* const block = std::malloc(size);
    if (!block)
        throw std::bad_alloc();
    if (isCounted) {
        inUse += malloc_usable_size(block);
        peak = std::max(peak, inUse);
    }
    return block;
}

void operator delete(void* block) noexcept {
    if (isCounted && block)
        inUse -= malloc_usable_size(block);
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

std::size_t heapInUse() {
    return inUse;
}
std::size_t heapPeak() {
    return peak;
}
void countHeap() {
    isCounted = true;
    peak = inUse = 0;
}

double inOwnProcess(const std::function<double()>& work) {
    int ends[2];
    if (pipe(ends) != 0)
        std::abort();
    const pid_t child = fork();
    if (child == 0) {
        const double result = work();
        _exit(write(ends[1], &result, sizeof result) == sizeof result ? 0 : 1);
    }
    close(ends[1]);
    double result = 0;
    const bool isRead = child > 0 && read(ends[0], &result, sizeof result) == sizeof result;
    close(ends[0]);
    int status = 0;
    if (!isRead || waitpid(child, &status, 0) != child || status != 0)
        std::abort();
    return result;
}

void measure(std::vector<Candidate>& candidates, int rounds, double secondsEach) {
    for (Candidate& candidate : candidates)
        candidate.nanoseconds = std::numeric_limits<double>::infinity();
    for (int round = 0; round < rounds; ++round)
        for (Candidate& candidate : candidates)
            candidate.nanoseconds = std::min(candidate.nanoseconds,
                                             inOwnProcess([&] { return leastOf(candidate, secondsEach); }));
}
