// The recently-used lists: real recently-used.xbel files, written by GLib itself or by hand, the
// desktop's own and those of apps installed as Flatpaks.
#include "platform/recently_used.h"

#include "platform/linux_platform.h"
#include "tests/support/stderr_capture.h"
#include "tests/support/temp_home.h"

#include <memory>
#include <string>

#include <glib.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrin::platform {
namespace {

using quorrin::testing::readFile;
using quorrin::testing::StderrCapture;
using quorrin::testing::TempHome;

struct DateTimeRelease {
    void operator()(GDateTime* time) const { g_date_time_unref(time); }
};
using DateTime = std::unique_ptr<GDateTime, DateTimeRelease>;
struct BookmarksRelease {
    void operator()(GBookmarkFile* bookmarks) const { g_bookmark_file_free(bookmarks); }
};

DateTime at(const char* iso8601) {
    DateTime time(g_date_time_new_from_iso8601(iso8601, nullptr));
    if (!time)
        throw std::runtime_error(std::string("bad time ") + iso8601);
    return time;
}

std::string uriOf(const std::string& path) {
    gchar* uri = g_filename_to_uri(path.c_str(), nullptr, nullptr);
    if (uri == nullptr)
        throw std::runtime_error("no URI for " + path);
    std::string text = uri;
    g_free(uri);
    return text;
}

std::string defaultList(const TempHome& home) {
    return home.path(".local/share/recently-used.xbel");
}

// Has GLib write the list the way desktop applications do. GLib leaves out an entry that no
// application registered, so every entry needs one.
class ListWriter {
public:
    ListWriter() : bookmarks_(g_bookmark_file_new()) {}

    // Registers `app` for the file with its own time stamp. GLib sets the entry's own times to
    // the present as it goes; set them afterwards.
    void application(const std::string& uri, const char* app, const char* stamp) {
        std::string exec = std::string(app) + " %u";
        ASSERT_TRUE(g_bookmark_file_set_application_info(
            bookmarks_.get(), uri.c_str(), app, exec.c_str(), 1, at(stamp).get(), nullptr));
    }
    void times(const std::string& uri, const char* added, const char* modified,
               const char* visited) {
        g_bookmark_file_set_added_date_time(bookmarks_.get(), uri.c_str(), at(added).get());
        g_bookmark_file_set_modified_date_time(bookmarks_.get(), uri.c_str(), at(modified).get());
        g_bookmark_file_set_visited_date_time(bookmarks_.get(), uri.c_str(), at(visited).get());
    }
    void save(const std::string& path) {
        GError* error = nullptr;
        ASSERT_TRUE(g_bookmark_file_to_file(bookmarks_.get(), path.c_str(), &error))
            << (error ? error->message : "");
    }

private:
    std::unique_ptr<GBookmarkFile, BookmarksRelease> bookmarks_;
};

Instant instant(std::int64_t seconds, std::uint32_t nanoseconds = 0) {
    return instantFrom(seconds, nanoseconds);
}

constexpr const char* listHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<xbel version=\"1.0\"\n"
    "      xmlns:bookmark=\"http://www.freedesktop.org/standards/desktop-bookmarks\"\n"
    "      xmlns:mime=\"http://www.freedesktop.org/standards/shared-mime-info\"\n"
    ">\n";
constexpr const char* listTail = "</xbel>\n";

std::string bookmark(const std::string& uri, const std::string& times,
                     const std::string& applications = "") {
    std::string text = "  <bookmark href=\"" + uri + "\" " + times + ">\n";
    if (!applications.empty()) {
        text +=
            "    <info>\n      <metadata owner=\"http://freedesktop.org\">\n"
            "        <mime:mime-type type=\"text/plain\"/>\n"
            "        <bookmark:applications>\n" +
            applications + "        </bookmark:applications>\n      </metadata>\n    </info>\n";
    }
    return text + "  </bookmark>\n";
}

TEST(RecentlyUsed, ReadsTheLatestTimeOfEachFileInAListGLibWrote) {
    TempHome home;
    home.makeDir(".local/share");
    std::string visitedLast = home.writeFile("Documents/visited.txt");
    std::string modifiedLast = home.writeFile("Documents/modified.txt");
    std::string appLast = home.writeFile("Downloads/app.pdf");

    ListWriter writer;
    writer.application(uriOf(visitedLast), "reader", "2021-01-01T00:00:00Z");
    writer.times(uriOf(visitedLast), "2021-01-01T00:00:00Z", "2021-02-01T00:00:00Z",
                 "2023-05-01T10:00:00.25Z");
    writer.application(uriOf(modifiedLast), "editor", "2021-03-01T00:00:00Z");
    writer.times(uriOf(modifiedLast), "2021-01-01T00:00:00Z", "2022-06-30T12:00:00Z",
                 "2022-01-01T00:00:00Z");
    writer.application(uriOf(appLast), "viewer", "2022-07-01T00:00:00Z");
    writer.application(uriOf(appLast), "printer", "2024-02-29T08:30:00Z");
    writer.application(uriOf(appLast), "mailer", "2023-01-01T00:00:00Z");
    writer.times(uriOf(appLast), "2021-01-01T00:00:00Z", "2021-01-02T00:00:00Z",
                 "2021-01-03T00:00:00Z");
    writer.save(defaultList(home));
    std::string written = readFile(defaultList(home));
    ASSERT_NE(written.find("<bookmark:application name=\"printer\""), std::string::npos);

    UsageDates dates = LinuxPlatform().readUsageDates();
    ASSERT_EQ(dates.size(), 3u);
    EXPECT_EQ(dates.at(visitedLast),
              instant(1'682'935'200, 250'000'000));             // 2023-05-01 10:00:00.25
    EXPECT_EQ(dates.at(modifiedLast), instant(1'656'590'400));  // 2022-06-30 12:00
    EXPECT_EQ(dates.at(appLast), instant(1'709'195'400));       // 2024-02-29 08:30
}

TEST(RecentlyUsed, TimesLeftOutOfTheListAreNotInvented) {
    TempHome home;
    std::string list = home.writeFile(
        ".local/share/recently-used.xbel",
        std::string(listHead) + bookmark("file:///home/someone/none.txt", "") +
            bookmark("file:///home/someone/added.txt", "added=\"2020-04-01T00:00:00Z\"") +
            bookmark("file:///home/someone/visited.txt", "visited=\"2019-04-01T00:00:00Z\"") +
            bookmark("file:///home/someone/old-stamp.txt", "added=\"2018-01-01T00:00:00Z\"",
                     "          <bookmark:application name=\"old\" exec=\"&apos;old %u&apos;\" "
                     "timestamp=\"1600000000\" count=\"1\"/>\n"
                     "          <bookmark:application name=\"new\" exec=\"&apos;new %u&apos;\" "
                     "count=\"1\"/>\n") +
            bookmark("file:///home/someone/before-1970.txt",
                     "modified=\"1969-12-31T23:59:59.5Z\"") +
            listTail);

    UsageDates dates = readRecentlyUsed(list);
    EXPECT_EQ(dates.count("/home/someone/none.txt"), 0u);
    // When the file was added to the list is no use of it: only visits, modifications and
    // applications' time stamps count.
    EXPECT_EQ(dates.count("/home/someone/added.txt"), 0u);
    EXPECT_EQ(dates.at("/home/someone/visited.txt"), instant(1'554'076'800));
    EXPECT_EQ(dates.at("/home/someone/old-stamp.txt"), instant(1'600'000'000));
    EXPECT_EQ(dates.at("/home/someone/before-1970.txt"), instant(-1, 500'000'000));
    EXPECT_EQ(dates.size(), 3u);
}

TEST(RecentlyUsed, FileNamesNeedNotBeUtf8) {
    TempHome home;
    home.makeDir(".local/share");
    std::string latin1 = home.writeFile("Documents/caf\xe9 menu.txt");  // é in ISO 8859-1
    std::string uri = uriOf(latin1);
    EXPECT_NE(uri.find("caf%E9%20menu.txt"), std::string::npos) << uri;
    ListWriter writer;
    writer.application(uri, "reader", "2022-01-01T00:00:00Z");
    writer.times(uri, "2022-01-01T00:00:00Z", "2022-01-01T00:00:00Z", "2022-03-04T05:06:07Z");
    writer.save(defaultList(home));

    UsageDates dates = readRecentlyUsed(defaultList(home));
    ASSERT_EQ(dates.size(), 1u);
    EXPECT_EQ(dates.begin()->first, latin1);
    EXPECT_EQ(dates.begin()->second, instant(1'646'370'367));
}

TEST(RecentlyUsed, OnlyFilesOnThisMachineAreListed) {
    TempHome home;
    const std::string times = "visited=\"2022-01-01T00:00:00Z\"";
    std::string list =
        home.writeFile(".local/share/recently-used.xbel",
                       std::string(listHead) + bookmark("https://example.org/report.pdf", times) +
                           bookmark("sftp://server/home/someone/report.pdf", times) +
                           bookmark("file://fileserver/share/report.pdf", times) +
                           bookmark("file://localhost/home/someone/local.pdf", times) +
                           bookmark("file:///home/someone/report.pdf", times) + listTail);

    UsageDates dates = readRecentlyUsed(list);
    EXPECT_EQ(dates.size(), 2u);
    EXPECT_EQ(dates.count("/home/someone/report.pdf"), 1u);
    EXPECT_EQ(dates.count("/home/someone/local.pdf"), 1u);
    EXPECT_EQ(dates.count("/share/report.pdf"), 0u);
}

TEST(RecentlyUsed, AMissingOrUnreadableListMeansNoDates) {
    TempHome home;
    LinuxPlatform platform;
    EXPECT_TRUE(platform.readUsageDates().empty());

    home.writeFile(".local/share/recently-used.xbel", "<?xml version=\"1.0\"?>\n<xbel><bookmark");
    StderrCapture capture;
    EXPECT_TRUE(platform.readUsageDates().empty());
    EXPECT_TRUE(
        readRecentlyUsed(home.writeFile("garbage.xbel", "\x01\x02 not xml at all")).empty());
    EXPECT_EQ(capture.finish(), "");

    std::string folder = home.makeDir("folder.xbel");
    EXPECT_TRUE(readRecentlyUsed(folder).empty());
    // A FIFO would block a reader until someone writes to it; reading must not wait.
    std::string fifo = home.path("fifo.xbel");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_TRUE(readRecentlyUsed(fifo).empty());
}

TEST(RecentlyUsed, AnAbsoluteXdgDataHomeIsHonoured) {
    TempHome home;
    const std::string entry =
        bookmark("file:///home/someone/a.txt", "visited=\"2022-01-01T00:00:00Z\"");
    home.writeFile("data/recently-used.xbel", std::string(listHead) + entry + listTail);
    LinuxPlatform platform;

    ::setenv("XDG_DATA_HOME", home.path("data").c_str(), 1);
    EXPECT_EQ(platform.readUsageDates().count("/home/someone/a.txt"), 1u);

    // A relative value is not a valid XDG_DATA_HOME: the default under HOME is used instead.
    ::setenv("XDG_DATA_HOME", "data", 1);
    EXPECT_TRUE(platform.readUsageDates().empty());
    home.writeFile(".local/share/recently-used.xbel",
                   std::string(listHead) +
                       bookmark("file:///home/someone/b.txt", "visited=\"2022-01-01T00:00:00Z\"") +
                       listTail);
    UsageDates dates = platform.readUsageDates();
    EXPECT_EQ(dates.size(), 1u);
    EXPECT_EQ(dates.count("/home/someone/b.txt"), 1u);
}

// Flatpak apps keep their own list in their sandbox's data folder; the latest time over every
// list counts, and a list that cannot be read takes nothing away from the others.
TEST(RecentlyUsed, SandboxedAppsListsCountWithTheDesktopsList) {
    TempHome home;
    auto list = [](const std::string& entries) {
        return std::string(listHead) + entries + listTail;
    };
    auto visited = [](const char* when) { return std::string("visited=\"") + when + "\""; };
    // Each file's latest use is in a different list; "both.pdf" is in all three.
    home.writeFile(
        ".local/share/recently-used.xbel",
        list(bookmark("file:///home/someone/desktop.txt", visited("2024-03-01T00:00:00Z")) +
             bookmark("file:///home/someone/both.pdf", visited("2022-01-01T00:00:00Z"))));
    home.writeFile(
        ".var/app/org.example.Viewer/data/recently-used.xbel",
        list(bookmark("file:///home/someone/both.pdf", visited("2024-06-01T12:00:00Z")) +
             bookmark("file:///home/someone/viewer.pdf", visited("2023-01-01T00:00:00Z"))));
    home.writeFile(
        ".var/app/org.example.Writer/data/recently-used.xbel",
        list(bookmark("file:///home/someone/both.pdf", visited("2023-06-01T00:00:00Z")) +
             bookmark("file:///home/someone/desktop.txt", visited("2020-01-01T00:00:00Z"))));
    // Lists that cannot be read: a malformed one, a folder in a list's place, and an app that has
    // no list at all; each is skipped.
    home.writeFile(".var/app/org.example.Broken/data/recently-used.xbel",
                   list("<bookmark href=\"file:///home/someone/both.pdf\" visited=\"2025-"));
    home.makeDir(".var/app/org.example.Folder/data/recently-used.xbel");
    home.makeDir(".var/app/org.example.Empty/data");

    StderrCapture capture;
    UsageDates dates = LinuxPlatform().readUsageDates();
    EXPECT_EQ(capture.finish(), "");
    EXPECT_EQ(dates.size(), 3u);
    EXPECT_EQ(dates.at("/home/someone/desktop.txt"), instant(1'709'251'200));  // 2024-03-01
    EXPECT_EQ(dates.at("/home/someone/both.pdf"), instant(1'717'243'200));     // 2024-06-01 12:00
    EXPECT_EQ(dates.at("/home/someone/viewer.pdf"), instant(1'672'531'200));   // 2023-01-01
}

// A list (or an app's whole folder) the user cannot read is skipped. Root reads any file whatever
// its mode, so then the list counts like any other.
TEST(RecentlyUsed, AListWithoutReadPermissionIsSkipped) {
    TempHome home;
    const std::string entry =
        std::string(listHead) +
        bookmark("file:///home/someone/a.pdf", "visited=\"2024-06-01T00:00:00Z\"") + listTail;
    home.writeFile(".local/share/recently-used.xbel",
                   std::string(listHead) +
                       bookmark("file:///home/someone/a.pdf", "visited=\"2021-01-01T00:00:00Z\"") +
                       listTail);
    std::string locked =
        home.writeFile(".var/app/org.example.Locked/data/recently-used.xbel", entry);
    ASSERT_EQ(::chmod(locked.c_str(), 0), 0);
    std::string closed =
        home.writeFile(".var/app/org.example.Closed/data/recently-used.xbel", entry);
    std::string closedApp = home.path(".var/app/org.example.Closed");
    ASSERT_EQ(::chmod(closedApp.c_str(), 0), 0);

    UsageDates dates = LinuxPlatform().readUsageDates();
    ::chmod(closedApp.c_str(), 0700);
    ASSERT_EQ(dates.size(), 1u);
    const Instant expected = ::geteuid() == 0 ? instant(1'717'200'000) : instant(1'609'459'200);
    EXPECT_EQ(dates.at("/home/someone/a.pdf"), expected);
}

// With no sandboxed apps, or a file where their folder would be, the desktop's list alone counts.
TEST(RecentlyUsed, NoSandboxedAppsFolderIsNoFailure) {
    TempHome home;
    home.writeFile(".local/share/recently-used.xbel",
                   std::string(listHead) +
                       bookmark("file:///home/someone/a.pdf", "visited=\"2021-01-01T00:00:00Z\"") +
                       listTail);
    EXPECT_EQ(LinuxPlatform().readUsageDates().at("/home/someone/a.pdf"), instant(1'609'459'200));
    home.writeFile(".var/app", "not a folder");
    EXPECT_EQ(LinuxPlatform().readUsageDates().at("/home/someone/a.pdf"), instant(1'609'459'200));
}

}  // namespace
}  // namespace quorrin::platform
