#pragma once

#include <string_view>

namespace ctl {

enum class PngState {
    Whole,
    Broken,
    TooLarge,    // beyond the image limit of the panel's toolkit
    OtherFormat, // it begins as a file of another format that the toolkit may read
    NoPicture
};

// What a file's bytes are to the panel, which reads PNG files with libpng too. Every row is decoded and none
// kept, so that this takes little memory and no library for graphics.
[[nodiscard]] PngState pngState(std::string_view bytes);

} // namespace ctl
