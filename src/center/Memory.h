#pragma once

namespace center {

// Lets the program's memory grow in larger steps than usual, as long as it is called before most of it is
// taken. To ask for little each time, and to give back what is needed again at once, costs a hundredth of the
// time to the first frame. What a step holds in reserve takes no memory until it is used.
void growMemoryInLargeSteps();

} // namespace center
