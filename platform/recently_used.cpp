// The freedesktop recently-used list (recently-used.xbel), read through GLib's GBookmarkFile.
#include "platform/recently_used.h"

#include "platform/fd.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>
#include <string>

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrin::platform {
namespace {

// Larger lists are not a recently-used list anyone's desktop wrote; they are left unread.
constexpr off_t largestList = 256 * 1024 * 1024;

struct BookmarksRelease {
    void operator()(GBookmarkFile* bookmarks) const { g_bookmark_file_free(bookmarks); }
};
struct StringsRelease {
    void operator()(gchar** strings) const { g_strfreev(strings); }
};
struct StringRelease {
    void operator()(gchar* text) const { g_free(text); }
};
using Strings = std::unique_ptr<gchar*, StringsRelease>;
using String = std::unique_ptr<gchar, StringRelease>;

// The whole list, when it is a regular file that can be read; a link to one is followed. Opening
// without blocking keeps a FIFO at that place from stopping the scan.
std::optional<std::string> readList(const std::string& path) {
    int descriptor;
    do {
        descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0)
        return std::nullopt;
    Fd fd(descriptor);
    struct stat info {};
    if (::fstat(fd.get(), &info) != 0 || !S_ISREG(info.st_mode) || info.st_size > largestList)
        return std::nullopt;
    std::string contents;
    char buffer[65536];
    for (;;) {
        ssize_t n = ::read(fd.get(), buffer, sizeof buffer);
        if (n == 0)
            return contents;
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 || contents.size() + static_cast<std::size_t>(n) > largestList)
            return std::nullopt;
        contents.append(buffer, static_cast<std::size_t>(n));
    }
}

// Microseconds since the epoch, GLib's own clock unit.
gint64 microsecondsOf(GDateTime* time) {
    return g_date_time_to_unix(time) * G_USEC_PER_SEC + g_date_time_get_microsecond(time);
}

Instant instantOfMicroseconds(gint64 microseconds) {
    gint64 seconds = microseconds / G_USEC_PER_SEC;
    gint64 rest = microseconds % G_USEC_PER_SEC;
    if (rest < 0) {  // before 1970: the fraction counts forward from the earlier second
        rest += G_USEC_PER_SEC;
        --seconds;
    }
    return instantFrom(seconds, static_cast<std::uint32_t>(rest) * 1000u);
}

// A file URI names a file on this machine when it has no host, "localhost" or this host's name.
bool isLocalHost(const gchar* host) {
    return host == nullptr || *host == '\0' || g_ascii_strcasecmp(host, "localhost") == 0 ||
           g_ascii_strcasecmp(host, g_get_host_name()) == 0;
}

// GLib's parser reports some malformed lists as a warning on stderr besides failing ("code should
// not be reached"). While this thread loads a list, GLib warnings it raises are dropped; warnings
// of other threads pass on to GLib's default handler.
thread_local bool loadingList = false;

void dropWarningsWhileLoading(const gchar* domain, GLogLevelFlags level, const gchar* message,
                              gpointer) {
    if (!loadingList)
        g_log_default_handler(domain, level, message, nullptr);
}

class QuietLoading {
public:
    QuietLoading()
        : handler_(g_log_set_handler(
              "GLib",
              static_cast<GLogLevelFlags>(G_LOG_LEVEL_WARNING | G_LOG_LEVEL_MESSAGE |
                                          G_LOG_LEVEL_INFO | G_LOG_LEVEL_DEBUG),
              dropWarningsWhileLoading, nullptr)) {
        loadingList = true;
    }
    ~QuietLoading() {
        loadingList = false;
        g_log_remove_handler("GLib", handler_);
    }
    QuietLoading(const QuietLoading&) = delete;
    QuietLoading& operator=(const QuietLoading&) = delete;

private:
    guint handler_;
};

bool load(GBookmarkFile* bookmarks, const std::string& contents) {
    QuietLoading quiet;
    return g_bookmark_file_load_from_data(bookmarks, contents.data(), contents.size(), nullptr);
}

}  // namespace

UsageDates readRecentlyUsed(const std::string& xbelPath) {
    UsageDates dates;
    std::optional<std::string> contents = readList(xbelPath);
    if (!contents)
        return dates;

    // GLib gives an entry that leaves out its "added", "modified" or "visited" time, or an
    // application entry without a time stamp, the moment of loading instead. Such a time was never
    // in the list: every time at or after the moment loading began is ignored.
    const gint64 loadingBegan = g_get_real_time();
    std::unique_ptr<GBookmarkFile, BookmarksRelease> bookmarks(g_bookmark_file_new());
    if (!load(bookmarks.get(), *contents))
        return dates;

    // A flag and a value rather than an optional: GCC's optimiser misreads the optional here
    // as possibly uninitialised.
    bool found = false;
    gint64 latest = 0;
    auto consider = [&](GDateTime* time) {
        if (time == nullptr)
            return;
        gint64 when = microsecondsOf(time);
        if (when < loadingBegan && (!found || when > latest)) {
            latest = when;
            found = true;
        }
    };

    gsize count = 0;
    Strings uris(g_bookmark_file_get_uris(bookmarks.get(), &count));
    for (gsize i = 0; i < count; ++i) {
        const gchar* uri = uris.get()[i];
        gchar* hostText = nullptr;
        // Percent escapes decode to the path's bytes, which need not be UTF-8; a URI of any other
        // scheme gives none.
        String path(g_filename_from_uri(uri, &hostText, nullptr));
        String host(hostText);
        if (!path || !isLocalHost(host.get()))
            continue;

        found = false;
        consider(g_bookmark_file_get_modified_date_time(bookmarks.get(), uri, nullptr));
        consider(g_bookmark_file_get_visited_date_time(bookmarks.get(), uri, nullptr));
        gsize appCount = 0;
        Strings apps(g_bookmark_file_get_applications(bookmarks.get(), uri, &appCount, nullptr));
        for (gsize a = 0; a < appCount; ++a) {
            GDateTime* stamp = nullptr;
            if (g_bookmark_file_get_application_info(bookmarks.get(), uri, apps.get()[a], nullptr,
                                                     nullptr, &stamp, nullptr))
                consider(stamp);
        }
        if (!found)
            continue;

        Instant when = instantOfMicroseconds(latest);
        // Two spellings of one URI (escaped and not) may name the same file: keep the later.
        auto [it, inserted] = dates.emplace(path.get(), when);
        if (!inserted)
            it->second = std::max(it->second, when);
    }
    return dates;
}

void keepLatest(UsageDates& dates, const UsageDates& more) {
    for (const auto& [path, when] : more) {
        auto [it, inserted] = dates.emplace(path, when);
        if (!inserted)
            it->second = std::max(it->second, when);
    }
}

}  // namespace quorrin::platform
