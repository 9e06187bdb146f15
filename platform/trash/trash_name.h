// Names for items inside a trash: files/<name> with its record in info/<name>.trashinfo.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quorrin::platform {

inline constexpr std::string_view trashInfoSuffix = ".trashinfo";
// The longest name in files/ whose info/ file still fits in one file name of 255 bytes (the
// NAME_MAX of every local Linux file system).
inline constexpr std::size_t maxTrashEntryBytes = 255 - trashInfoSuffix.size();

// The name to try for the `attempt`-th time (1 for the first): the item's own name, then
// name + ".2", name + ".3", … A name too long for maxTrashEntryBytes is shortened first, never
// inside a UTF-8 character, so that the suffix always survives; collisions between shortened names
// are settled by trying the next attempt.
std::string trashEntryName(std::string_view name, std::uint64_t attempt);

}  // namespace quorrin::platform
