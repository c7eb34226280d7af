#pragma once

namespace resources {

// Brings the texts of the user's language (LC_MESSAGES) into the application, English where a language or a
// text is missing, and sets the application's direction of reading. A text that no table has shows its key.
void installLanguage();

} // namespace resources
