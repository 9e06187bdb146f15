// PDF probing through poppler: does the document structure load, unlocked?
#pragma once

#include <string>

namespace quorrin::platform {

// False for a damaged document and for one locked with a user password.
bool pdfFileOpens(const std::string& path);

}  // namespace quorrin::platform
