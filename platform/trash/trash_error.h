// The error raised when no trash can take an item.
#pragma once

#include "platform/error.h"

#include <string_view>

namespace quorrin::platform {

// Code of a refusal decided by Quorrin (a trash folder that is a link, belongs to another user,
// or none on the item's file system), in the QUORRIN domain.
inline constexpr int noUsableTrashCode = 4;

// "Cannot move " + name + " to the Trash: " + reason, in the QUORRIN domain.
Error cannotTrash(std::string_view itemName, std::string_view reason);

// The same text around an operating-system error: its domain and code are kept and its own
// message becomes the reason.
Error cannotTrash(std::string_view itemName, const Error& cause);

}  // namespace quorrin::platform
