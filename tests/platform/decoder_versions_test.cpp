// The decoder versions the platform reports are those of the libvips and poppler loaded now.
#include "platform/linux_platform.h"
#include "platform/media_module.h"

#include <string_view>

#include <gtest/gtest.h>
#include <poppler-version.h>
#include <vips/vips.h>

namespace quorrin::platform {
namespace {

// Three numbers with dots between them, as "8.14.1".
bool isVersionNumber(std::string_view text) {
    int dots = 0;
    bool digitBefore = false;
    for (char c : text) {
        if (c == '.' && digitBefore) {
            ++dots;
            digitBefore = false;
        } else if (c >= '0' && c <= '9') {
            digitBefore = true;
        } else {
            return false;
        }
    }
    return dots == 2 && digitBefore;
}

TEST(DecoderVersions, NameTheLibvipsAndPopplerThatAreLoaded) {
    LinuxPlatform platform;
    Result<std::string> versions = platform.decoderVersions();
    ASSERT_TRUE(versions.ok()) << versions.error().description;
    // Asked of the libraries in this process, which the media module shares.
    const std::string vips = vips_version_string();
    const std::string poppler = poppler::version_string();
    EXPECT_EQ(*versions, "libvips " + vips + " • poppler " + poppler);
    EXPECT_TRUE(isVersionNumber(vips)) << vips;
    EXPECT_TRUE(isVersionNumber(poppler)) << poppler;
    // The module is loaded once: asking again gives the same text.
    EXPECT_EQ(platform.decoderVersions().value(), *versions);
    EXPECT_TRUE(loadedMediaModule().ok());
}

}  // namespace
}  // namespace quorrin::platform
