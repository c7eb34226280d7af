#pragma once

namespace platform::plist {

// The character of a code of the NeXTSTEP set; U+0000 for the two codes that have none.
[[nodiscard]] char16_t nextStepCharacter(unsigned char code);

} // namespace platform::plist
