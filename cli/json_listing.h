// The --json form of the listing commands: one object per file.
#pragma once

#include "engine/entry.h"

#include <string>
#include <vector>

namespace quorrin::cli {

// A JSON array of {"id","url","size","modified","lastUsed","created","category","root","issue",
// "duplicateOf"}; dates as ISO 8601 UTC strings, absent values as null. Bytes that are not UTF-8
// are shown as U+FFFD, since JSON text cannot carry them.
std::string jsonListing(const std::vector<Engine::Entry>& entries);
std::string jsonStrings(const std::vector<std::string>& strings);

}  // namespace quorrin::cli
