#pragma once

#include <string>

// How long the caller of Info is busy, and what of that is the writing of the request.
void measureLaunch(const std::string& feeds, const std::string& folder);
