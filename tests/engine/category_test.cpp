// category(): the category folder of a file, by its lower-cased last extension.
#include "engine/category.h"

#include "engine/tables.h"

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

struct Case {
    const char* path;
    const char* expected;
};

TEST(Category, FollowsTheTablesInOrder) {
    const Case cases[] = {
        {"/h/photo.JPG", "02 Images"},
        {"/h/clip.MTS", "01 Videos"},
        {"/h/backup.tar.gz", "05 Installers and ZIP"},
        {"/h/README", "06 Other Files"},
        {"/h/design.psd", "07 Projects"},
        {"/h/logo.ai", "07 Projects"},
        {"/h/page.html", "04 Documents"},
        {"/h/vector.svg", "02 Images"},
        {"/h/song.FLAC", "03 Audio"},
        {"/h/setup.dmg", "05 Installers and ZIP"},
        {"/h/edit.prproj", "07 Projects"},
        {"/h/trailing.", "06 Other Files"},
        {"/h/archive.tar", "05 Installers and ZIP"},
        {"/h/notes.md", "06 Other Files"},
        {"/h/dir.with.dots/plain", "06 Other Files"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(category(c.path), c.expected) << c.path;
}

TEST(Category, ResultIsOneOfTheSevenInternedNames) {
    std::string_view name = category("/h/a.png");
    EXPECT_EQ(categoryName(name).data(), name.data());
    EXPECT_TRUE(categoryName("Nope").empty());
}

TEST(Tables, HoldTheDocumentedSizes) {
    EXPECT_EQ(categories().size(), 5u);
    EXPECT_EQ(categories()[1].extensions.size(), 17u);
    EXPECT_EQ(projectFileExtensions().size(), 19u);
    EXPECT_EQ(projectExtensions().size(), 8u);
    EXPECT_EQ(protectedNames().size(), 10u);
    EXPECT_EQ(packageExtensions().size(), 16u);
    EXPECT_TRUE(protectedNames().contains("Neat Video v6 for Resolve"));
    EXPECT_FALSE(projectExtensions().contains("psd"));
    EXPECT_TRUE(projectExtensions().contains("dra"));
}

}  // namespace
}  // namespace quorrin::Engine
