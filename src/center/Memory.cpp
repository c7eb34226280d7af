#include "center/Memory.h"

#include <malloc.h>

namespace center {

void growMemoryInLargeSteps() {
#ifdef M_TOP_PAD // the GNU C library's
    constexpr int mebibyte = 1024 * 1024;
    mallopt(M_TOP_PAD, mebibyte / 2);
    // Once one is set the library learns the others no more: without them each reading of a longer feed would
    // have its memory mapped and cleared anew.
    mallopt(M_MMAP_THRESHOLD, mebibyte);
    mallopt(M_TRIM_THRESHOLD, 2 * mebibyte);
#endif
}

} // namespace center
