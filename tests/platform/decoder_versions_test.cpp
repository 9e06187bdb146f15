// The decoder versions the platform reports are those of the libvips and poppler loaded now.
#include "platform/linux_platform.h"
#include "platform/media_module.h"

#include <regex>

#include <gtest/gtest.h>
#include <poppler-version.h>
#include <vips/vips.h>

namespace quorrin::platform {
namespace {

TEST(DecoderVersions, NameTheLibvipsAndPopplerThatAreLoaded) {
    LinuxPlatform platform;
    Result<std::string> versions = platform.decoderVersions();
    ASSERT_TRUE(versions.ok()) << versions.error().description;
    // Asked of the libraries in this process, which the media module shares.
    EXPECT_EQ(*versions, std::string("libvips ") + vips_version_string() + " • poppler " +
                             poppler::version_string());
    EXPECT_TRUE(
        std::regex_match(*versions, std::regex(R"(libvips \d+\.\d+\.\d+ • poppler \d+\.\d+\.\d+)")))
        << *versions;
    // The module is loaded once: asking again gives the same text.
    EXPECT_EQ(platform.decoderVersions().value(), *versions);
    EXPECT_TRUE(loadedMediaModule().ok());
}

}  // namespace
}  // namespace quorrin::platform
