// The guarded file actions: a free name for a move, the unchanged test, and the verified trash.
#pragma once

#include "engine/entry.h"
#include "platform/platform.h"

#include <functional>
#include <string>

namespace quorrin::Engine {

// `path` itself when nothing is there, else the first free "stem (n).ext" in the same folder,
// n = 2, 3, … . Any item counts as taken, a dangling symbolic link included; a name whose lookup
// fails for another reason (too long, no permission) is returned as it is, to be refused by the
// move that follows.
std::string unique(const std::string& path, platform::Platform& platform = platform::system());

// The same search with `taken` deciding which names are taken: for choosing names ahead of moves
// that have not happened yet, on a view of the folder that counts them.
std::string unique(const std::string& path, const std::function<bool(const std::string&)>& taken);

// True only when the item at entry.url is still a regular file with the recorded size and exactly
// the recorded modification instant.
bool unchanged(const Entry& entry, platform::Platform& platform = platform::system());

// Moves entry.url to the Trash after re-checking it: code 1 when it changed since the scan; with
// `verifyDuplicate`, code 2 unless the original named by `duplicateOf` exists, is another file, and
// has exactly the same content by a fresh full SHA-256 of both. Other errors pass through. The file
// stays in place on every failure.
platform::Status trash(const Entry& entry, bool verifyDuplicate,
                       platform::Platform& platform = platform::system());

}  // namespace quorrin::Engine
