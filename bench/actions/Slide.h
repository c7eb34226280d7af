#pragma once

#include <string>

// A frame of a row's slide against painting the same row standing still, in the panel's window.
void measureSlide(const std::string& feeds, const std::string& memory);
