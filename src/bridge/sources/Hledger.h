#pragma once

#include "bridge/sources/Reading.h"

#include <string>

namespace bridge {

// What hledger printed about a journal (HledgerProgram.h).
struct HledgerAnswer {
    std::string transactions; // JSON: the generated transactions, and the real ones with the tag paid-of
    std::string accounts;     // a line "NAME  ; type: LETTER" for each account
};

// The periodic rules of a journal. hledger generates transactions from them, but has no notion of a plan that
// is due, so that it is defined here:
//
// - A rule's key is the value of the tag `plan:` in its comment. Without the tag it is "~" and a checksum of
// the
//   period expression and the description, and so another one when the user edits these. The second of two
//   rules with one key, in the order of the file, has a key of its own, and a warning asks for tags.
// - An occurrence is due unless a real transaction has the tags `plan: KEY` and `paid-of: DATE`, or is before
//   the first day, however late it is.
// - Money moves where an account is an asset or a liability by hledger's types. Where hledger knows no type,
//   the top account's name in the languages of our translations decides, with a warning; a rule that only has
//   accounts of unknown kind has no amount. A posting in several commodities has none either.
//
// An amount has the decimals that hledger prints. Its JSON has ten at most and rounds further ones away.
// A rule that ends counts as repeating to its end: only its expression could tell, and hledger alone reads
// it.
[[nodiscard]] Reading readHledger(const HledgerAnswer& answer, Day first, const Period& period);

} // namespace bridge
