// The freedesktop recently-used list (recently-used.xbel), read through GLib's GBookmarkFile.
#pragma once

#include "platform/platform.h"

#include <string>

namespace quorrin::platform {

// For each local file in the list, the latest time the list holds for it: visited, modified, or an
// application's time stamp. A missing or unreadable list gives an empty map.
UsageDates readRecentlyUsed(const std::string& xbelPath);

}  // namespace quorrin::platform
