// Moving items to the user's Trash, following the freedesktop.org Trash specification.
#pragma once

#include "platform/platform.h"
#include "platform/result.h"

#include <string>

namespace quorrin::platform {

// Moves `path` into the Trash that takes it (the home trash, or a trash at the top of the file
// system it lives on), recording where it came from. Never copies, never deletes, never replaces:
// on any failure the item stays where it was.
Status moveToTrash(Platform& platform, const std::string& path);

}  // namespace quorrin::platform
