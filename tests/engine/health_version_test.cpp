// The version health findings are kept under: the checks' and that of the decoders the platform
// reports as loaded.
#include "engine/health.h"
#include "platform/linux_platform.h"
#include "platform/media_module.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

// The Linux platform with decoders of the test's choosing.
class DecodersPlatform : public platform::LinuxPlatform {
public:
    explicit DecodersPlatform(platform::Result<std::string> answer) : answer_(std::move(answer)) {}
    platform::Result<std::string> decoderVersions() override {
        ++asked;
        return answer_;
    }
    int asked = 0;

private:
    platform::Result<std::string> answer_;
};

TEST(HealthCheckVersion, NamesTheChecksAndTheDecodersThePlatformReports) {
    DecodersPlatform platform(std::string("libvips 9.1.2 • poppler 30.4.0"));
    const HealthCheckVersion version = healthCheckVersion(platform);
    EXPECT_EQ(version.text, "checks 1 • libvips 9.1.2 • poppler 30.4.0");
    EXPECT_TRUE(version.known);
    EXPECT_EQ(platform.asked, 1);

    const HealthCheckVersion loaded = healthCheckVersion(platform::system());
    EXPECT_TRUE(loaded.known);
    EXPECT_EQ(loaded.text, "checks 1 • " + platform::system().decoderVersions().value());
    EXPECT_NE(loaded.text, version.text);
}

TEST(HealthCheckVersion, DecodersThatCannotBeLoadedGiveATextNoVersionMatches) {
    DecodersPlatform platform(
        platform::Error::quorrin(platform::mediaModuleNotLoadedCode, "not found"));
    const HealthCheckVersion version = healthCheckVersion(platform);
    EXPECT_FALSE(version.known);
    EXPECT_EQ(version.text.find("libvips"), std::string::npos) << version.text;
    EXPECT_NE(version.text, healthCheckVersion(platform::system()).text);
}

}  // namespace
}  // namespace quorrin::Engine
