// Names for items inside a trash: files/<name> with its record in info/<name>.trashinfo.
#include "platform/trash/trash_name.h"

namespace quorrin::platform {
namespace {

bool isContinuationByte(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// The first `limit` bytes of `name`, stepping back over at most three UTF-8 continuation bytes so
// that a multi-byte character is dropped whole rather than cut in two.
std::string_view shortened(std::string_view name, std::size_t limit) {
    if (name.size() <= limit)
        return name;
    std::size_t cut = limit;
    for (int step = 0; step < 3 && cut > 1 && isContinuationByte(name[cut]); ++step)
        --cut;
    return name.substr(0, cut);
}

}  // namespace

std::string trashEntryName(std::string_view name, std::uint64_t attempt) {
    std::string suffix = attempt <= 1 ? std::string() : "." + std::to_string(attempt);
    std::string entry(shortened(name, maxTrashEntryBytes - suffix.size()));
    entry += suffix;
    return entry;
}

}  // namespace quorrin::platform
