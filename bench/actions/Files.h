#pragma once

#include <string>

// One action against writing the same two files, on a disk and in memory, and how it grows.
void measureFiles(const std::string& feeds, const std::string& disk, const std::string& memory);
