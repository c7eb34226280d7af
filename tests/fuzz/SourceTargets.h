#pragma once

#include <string_view>

// As Targets.h, for the readers of finance programs' files: nothing is half read, days are in order and
// within the period, and a longer period only adds to them.
namespace fuzz {

// A file of GnuCash, packed or not.
void readGnuCash(std::string_view bytes);
// What hledger prints: its accounts, and from the first bracket on its transactions.
void readHledger(std::string_view bytes);
void readHomeBank(std::string_view bytes);
void readKMyMoney(std::string_view bytes);

} // namespace fuzz
