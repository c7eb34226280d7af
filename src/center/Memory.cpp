#include "center/Memory.h"

#include <malloc.h>

namespace center {

void growMemoryInLargeSteps() {
#ifdef M_TOP_PAD // the GNU C library's
    mallopt(M_TOP_PAD, 512 * 1024);
#endif
}

} // namespace center
