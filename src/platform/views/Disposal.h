#pragma once

namespace platform {

class View;

// Deletes views that nobody refers to any more: not before the event loop comes round, so that a handler that
// is running on one may still end, and no more of them at a time than an event may wait for. A thousand rows
// that go at once go in slices, in the order in which they came, and events are served between these.
//
// Main thread only. What still waits when the application ends is deleted first.

// Takes a view over. It has no superview any more, and gets none.
void deleteInTurn(View& view);

// Deletes at once what waits, for those who run no event loop; not from inside a view's handler.
void deleteWaitingViews();

} // namespace platform
