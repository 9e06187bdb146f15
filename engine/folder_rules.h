// The folder rules: projects, the personal collections, and which folders may be connected.
#pragma once

#include "platform/platform.h"

#include <string>
#include <string_view>
#include <vector>

namespace quorrin::Engine {

// Whether a folder is a project (or protected) and must be treated as one unit.
bool project(const std::string& folder, platform::Platform& platform = platform::system());
// The same test on an open directory called `name` whose entries the caller has already read, as
// the scanner meets it: a marker is looked up only when the listing holds its name.
bool projectAt(const platform::Fd& directory, std::string_view name,
               const std::vector<platform::DirectoryEntry>& entries,
               platform::Platform& platform = platform::system());
// Whether a folder is the user's Desktop, Documents or Downloads.
bool personalCollection(const std::string& folder,
                        platform::Platform& platform = platform::system());
// Whether a folder may be connected and scanned: strictly below the home folder, not hidden, not
// protected, and not a project unless it is a personal collection.
bool allowedRoot(const std::string& folder, platform::Platform& platform = platform::system());

}  // namespace quorrin::Engine
