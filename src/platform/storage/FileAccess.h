#pragma once

#include "platform/storage/FilePlace.h"

// Who may do what with a file, carried over to the file that replaces it.
namespace platform {

// Gives an open new file, which only its owner may open yet, the owner, group, access-control list (acl(5)),
// other extended attributes and mode of an old file. Access is never widened by what the system refuses, not
// even for a moment: nobody may do with the new file what the old one did not let him. Where the list cannot
// be carried over, or nobody can say whether there is one (without /proc), only the owner keeps access; where
// the group cannot, its members have none and others have no more than they had. -1 with errno set if the
// mode cannot be set; then only the owner may open the file.
[[nodiscard]] int carryAccessOver(const ExistingFile& old, int file);

} // namespace platform
