// The freedesktop recently-used list (recently-used.xbel), read through GLib's GBookmarkFile.
#pragma once

#include "platform/platform.h"

#include <string>

namespace quorrin::platform {

// For each local file in the list, the latest time the list holds for it: added, modified,
// visited, or an application's time stamp. Paths are the bytes the file URIs encode. Entries of
// other schemes or hosts are left out; a missing, unreadable or malformed list gives an empty map.
UsageDates readRecentlyUsed(const std::string& xbelPath);

// Adds the dates of `more` to `dates`, keeping for each file the later of the two.
void keepLatest(UsageDates& dates, const UsageDates& more);

}  // namespace quorrin::platform
