#include "platform/recently_used.h"

#include <algorithm>
#include <memory>

#include <glib.h>

namespace quorrin::platform {
namespace {

Instant instantOf(GDateTime* time) {
    return instantFrom(g_date_time_to_unix(time),
                       static_cast<std::uint32_t>(g_date_time_get_microsecond(time)) * 1000u);
}

void keepLatest(std::optional<Instant>& latest, GDateTime* time) {
    if (time == nullptr)
        return;
    Instant when = instantOf(time);
    if (!latest || when > *latest)
        latest = when;
}

}  // namespace

UsageDates readRecentlyUsed(const std::string& xbelPath) {
    UsageDates dates;
    std::unique_ptr<GBookmarkFile, void (*)(GBookmarkFile*)> bookmarks(g_bookmark_file_new(),
                                                                       &g_bookmark_file_free);
    if (!g_bookmark_file_load_from_file(bookmarks.get(), xbelPath.c_str(), nullptr))
        return dates;

    gsize count = 0;
    gchar** uris = g_bookmark_file_get_uris(bookmarks.get(), &count);
    for (gsize i = 0; i < count; ++i) {
        const gchar* uri = uris[i];
        gchar* path = g_filename_from_uri(uri, nullptr, nullptr);
        if (path == nullptr)
            continue;  // not a local file
        std::optional<Instant> latest;
        keepLatest(latest, g_bookmark_file_get_visited_date_time(bookmarks.get(), uri, nullptr));
        keepLatest(latest, g_bookmark_file_get_modified_date_time(bookmarks.get(), uri, nullptr));
        gsize appCount = 0;
        gchar** apps = g_bookmark_file_get_applications(bookmarks.get(), uri, &appCount, nullptr);
        for (gsize a = 0; a < appCount; ++a) {
            GDateTime* stamp = nullptr;
            if (g_bookmark_file_get_application_info(bookmarks.get(), uri, apps[a], nullptr,
                                                     nullptr, &stamp, nullptr))
                keepLatest(latest, stamp);
        }
        g_strfreev(apps);
        if (latest) {
            auto [it, inserted] = dates.emplace(path, *latest);
            if (!inserted)
                it->second = std::max(it->second, *latest);
        }
        g_free(path);
    }
    g_strfreev(uris);
    return dates;
}

}  // namespace quorrin::platform
