#pragma once

#include <string>

// How long the main thread is busy at a stretch after an action, against its parts measured alone.
void measureStalls(const std::string& feeds, const std::string& memory);
