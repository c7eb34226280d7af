#include "platform/plist/AllocationMeter.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

std::size_t inUse = 0;
std::size_t mostInUse = 0;
std::size_t blocks = 0;
std::size_t inUseBefore = 0;

} // namespace

void* operator new(std::size_t size) {
    void* const block = std::malloc(size);
    if (!block)
        throw std::bad_alloc();
    inUse += malloc_usable_size(block);
    mostInUse = std::max(mostInUse, inUse);
    ++blocks;
    return block;
}

// The standard's calls the one above, but a sanitizer's does not.
void* operator new(std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* block) noexcept {
    inUse -= block ? malloc_usable_size(block) : 0;
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

AllocationMeter::AllocationMeter() {
    inUseBefore = inUse;
    mostInUse = inUse;
    blocks = 0;
}

std::size_t AllocationMeter::peak() const {
    return mostInUse - inUseBefore;
}

std::size_t AllocationMeter::count() const {
    return blocks;
}
