#pragma once

#include <string_view>

// What the fuzz targets do with one input. Each ends the process (SIGABRT) where something does not hold; the
// sanitizers see to memory. All are replayed over their seeds by an ordinary test.
namespace fuzz {

// The XML reader; the reader of records gives what the tree gives.
void readXml(std::string_view bytes);
// The binary reader; a list that is read takes no more memory than it may.
void readBinary(std::string_view bytes);
// The old form's reader.
void readAscii(std::string_view bytes);
// Any form: what is read, written and read again is the same, less what the writer is stated to drop.
void writeAfterRead(std::string_view bytes);
// Any form: to edit a list and then read it gives the same as to read it and then change its value.
void editThenRead(std::string_view bytes);
// A packet of any of the processes of korvel-today; a message that is read is written and read again the same.
void readMessage(std::string_view bytes);

} // namespace fuzz
