#include "Measure.h"

#include <malloc.h>

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

void measure(std::vector<Candidate>& candidates, int rounds, double secondsEach) {
    for (Candidate& candidate : candidates)
        candidate.nanoseconds = std::numeric_limits<double>::infinity();
    for (int round = 0; round < rounds; ++round)
        for (Candidate& candidate : candidates) {
            double left = secondsEach * 1e9;
            do {
                const double time = once(candidate);
                candidate.nanoseconds = std::min(candidate.nanoseconds, time);
                left -= time;
            } while (left > 0);
        }
}
