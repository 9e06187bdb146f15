// project(), personalCollection() and allowedRoot() on real folders under a temporary HOME.
#include "engine/folder_rules.h"

#include "tests/support/temp_home.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorrin::Engine {
namespace {

using quorrin::testing::TempHome;

TEST(Project, MarkersMakeAProject) {
    TempHome home;
    home.writeFile("rust/Cargo.toml");
    home.writeFile("edit/cut.prproj");
    home.writeFile("shoot/(Footage)/a.mov");
    home.writeFile("art/only.psd");
    home.writeFile("git/.git/HEAD");
    home.writeFile("py/pyproject.toml");
    EXPECT_TRUE(project(home.path("rust")));
    EXPECT_TRUE(project(home.path("edit")));
    EXPECT_TRUE(project(home.path("shoot")));
    EXPECT_TRUE(project(home.path("git")));
    EXPECT_TRUE(project(home.path("py")));
    EXPECT_FALSE(project(home.path("art")));
}

TEST(Project, TheProjectsCategoryFolderIsNeverOne) {
    TempHome home;
    home.writeFile("Documents/07 Projects/.git/HEAD");
    EXPECT_FALSE(project(home.path("Documents/07 Projects")));
}

TEST(Project, ProtectedNamesAreProjects) {
    TempHome home;
    home.makeDir("x/node_modules");
    EXPECT_TRUE(project(home.path("x/node_modules")));
    home.makeDir("x/library");
    EXPECT_FALSE(project(home.path("x/library")));
}

TEST(Project, AnUnlistableFolderIsNoProject) {
    TempHome home;
    EXPECT_FALSE(project(home.path("missing")));
}

TEST(Project, ADanglingMarkerLinkDoesNotCount) {
    TempHome home;
    home.makeDir("d");
    ASSERT_EQ(::symlink("/nonexistent/target", home.path("d/package.json").c_str()), 0);
    EXPECT_FALSE(project(home.path("d")));
}

TEST(PersonalCollection, RecognisesTheThreeFolders) {
    TempHome home;
    home.makeDir("Desktop");
    home.makeDir("Documents");
    home.makeDir("Downloads");
    home.makeDir("Pictures");
    EXPECT_TRUE(personalCollection(home.path("Desktop")));
    EXPECT_TRUE(personalCollection(home.path("Documents/")));
    EXPECT_TRUE(personalCollection(home.path("Pictures/../Downloads")));
    EXPECT_FALSE(personalCollection(home.path("Pictures")));
}

TEST(AllowedRoot, RefusesTheHomeOutsideAndProtectedFolders) {
    TempHome home;
    home.makeDir("Library/Caches");
    home.makeDir(".config/app");
    home.makeDir("Code/web/node_modules/pkg");
    home.makeDir("Pictures/Trips");
    home.writeFile("Documents/.git/HEAD");
    home.writeFile("Code/site/package.json");
    home.makeDir("library");

    EXPECT_FALSE(allowedRoot(home.home()));
    EXPECT_FALSE(allowedRoot(home.base()));
    EXPECT_FALSE(allowedRoot("/tmp"));
    EXPECT_FALSE(allowedRoot(home.path("Library")));
    EXPECT_FALSE(allowedRoot(home.path("Library/Caches")));
    EXPECT_FALSE(allowedRoot(home.path(".config")));
    EXPECT_FALSE(allowedRoot(home.path(".config/app")));
    EXPECT_FALSE(allowedRoot(home.path("Code/web/node_modules")));
    EXPECT_FALSE(allowedRoot(home.path("Code/web/node_modules/pkg")));
    EXPECT_FALSE(allowedRoot(home.path("Code/site")));
    EXPECT_TRUE(allowedRoot(home.path("Documents")));
    EXPECT_TRUE(allowedRoot(home.path("Pictures/Trips")));
    EXPECT_TRUE(allowedRoot(home.path("library")));
}

TEST(AllowedRoot, ResolvesLinksBeforeTheTest) {
    TempHome home;
    std::string outside = home.base() + "/elsewhere";
    ASSERT_EQ(::mkdir(outside.c_str(), 0700), 0);
    ASSERT_EQ(::symlink(outside.c_str(), home.path("Shortcut").c_str()), 0);
    EXPECT_FALSE(allowedRoot(home.path("Shortcut")));

    home.makeDir("Pictures/Real");
    ASSERT_EQ(::symlink(home.path("Pictures/Real").c_str(), home.path("Inside").c_str()), 0);
    EXPECT_TRUE(allowedRoot(home.path("Inside")));
}

}  // namespace
}  // namespace quorrin::Engine
