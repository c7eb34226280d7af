#pragma once

namespace bridge {

// In a program that is linked with this, the calls that change files are its own, for the database's library
// too. Nothing is synced, as a process that ends loses nothing that it has written.

// Ends this process before a call that changes files, after this number of them; a negative number for never.
void endBeforeCall(long number);

} // namespace bridge
