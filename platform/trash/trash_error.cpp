// The error raised when no trash can take an item.
#include "platform/trash/trash_error.h"

#include <string>

namespace quorrin::platform {
namespace {

std::string describe(std::string_view itemName, std::string_view reason) {
    std::string text = "Cannot move ";
    text += itemName;
    text += " to the Trash: ";
    text += reason;
    return text;
}

}  // namespace

Error cannotTrash(std::string_view itemName, std::string_view reason) {
    return Error::quorrin(noUsableTrashCode, describe(itemName, reason));
}

Error cannotTrash(std::string_view itemName, const Error& cause) {
    return Error{cause.domain, cause.code, describe(itemName, cause.description)};
}

}  // namespace quorrin::platform
