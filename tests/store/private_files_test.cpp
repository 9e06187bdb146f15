// Quorrin's own files are readable by the user only: files 0600, folders 0700, whatever the umask.
#include "tests/support/store/store_fixture.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quorrin::store {
namespace {

using quorrin::testing::StoreFixture;

std::uint32_t modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

// Sets the umask for one test and puts the old one back.
class Umask {
public:
    explicit Umask(mode_t mask) : saved_(::umask(mask)) {}
    ~Umask() { ::umask(saved_); }

private:
    mode_t saved_;
};

TEST(PrivateFiles, SettingsHistoryLocksAndTrashRecordsAreTheUsersAlone) {
    Umask open(0);  // the mode asked for is the mode given
    StoreFixture f;
    std::string kept = f.home.writeFile("Downloads/kept.txt", "kept");
    f.home.writeFile("Downloads/a.txt", "same");
    f.home.writeFile("Downloads/Keep/b.txt", "same");
    Store& store = f.open();
    store.scan({});
    f.settle();
    store.keep(*f.file(kept));
    store.scan({.organize = true});
    f.settle();
    ASSERT_EQ(store.moves().size(), 0u);  // the one loose file left was a duplicate
    store.setWeeks(6);

    const std::string history = f.historyPath();
    const std::string settings = f.home.path(".config/QUORRIN/settings.json");
    for (const std::string& file : {settings, settings + ".lock", history, history + ".lock",
                                    f.home.path(".local/share/Trash/info/a.txt.trashinfo")})
        EXPECT_EQ(modeOf(file), 0600u) << file;
    for (const char* folder :
         {".config", ".config/QUORRIN", ".local", ".local/share", ".local/share/QUORRIN",
          ".local/share/Trash", ".local/share/Trash/files", ".local/share/Trash/info"})
        EXPECT_EQ(modeOf(f.home.path(folder)), 0700u) << folder;
}

TEST(PrivateFiles, ARewrittenHistoryIsPrivateEvenWhenTheOldOneWasNot) {
    Umask open(0);
    StoreFixture f;
    f.home.writeFile("Downloads/a.txt", "a");
    f.home.makeDir(".local/share/QUORRIN");
    quorrin::testing::writeFileAt(f.historyPath(), "[]");
    ASSERT_EQ(::chmod(f.historyPath().c_str(), 0644), 0);
    f.open().scan({.organize = true});
    f.settle();
    EXPECT_EQ(modeOf(f.historyPath()), 0600u);
}

}  // namespace
}  // namespace quorrin::store
