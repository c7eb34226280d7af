#include "platform/storage/OwnReplacements.h"

#include <algorithm>
#include <cstddef>
#include <deque>

namespace platform {

namespace {

struct Replacement {
    FileVersion old;
    FileVersion replacement;
};

constexpr std::size_t most = 100;

// From the latest to the earliest.
std::deque<Replacement>& replacements() {
    static std::deque<Replacement> all;
    return all;
}

} // namespace

void OwnReplacements::note(const FileVersion& old, const FileVersion& replacement) {
    auto& all = replacements();
    all.push_front({old, replacement});
    if (all.size() > most)
        all.pop_back();
}

// Goes back from one replacement to the earlier one that made the version which it replaced.
bool OwnReplacements::lead(const FileVersion& from, const FileVersion& to) {
    FileVersion version = to;
    for (const Replacement& step : replacements()) {
        if (step.replacement != version)
            continue;
        if (step.old == from)
            return true;
        version = step.old;
    }
    return false;
}

} // namespace platform
