// PDF probing through poppler: does the document structure load, unlocked?
#pragma once

#include <string>

namespace quorrin::platform {

// False for a damaged document, for one locked with a user password (an owner password alone
// does not lock it) and for a path that is not a regular file (a symbolic link is not followed).
// Nothing is printed. Safe to call from several threads at once.
bool pdfFileOpens(const std::string& path);

}  // namespace quorrin::platform
