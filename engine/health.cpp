// The health check of one file: empty files, undecodable images, unopenable PDFs, installers.
#include "engine/health.h"

#include <algorithm>
#include <array>

namespace quorrin::Engine {
namespace {

// Extensions whose files are decoded, in this order. Deliberately narrower than the images
// category: webp, avif, svg and camera raw files are never decoded and never get an image finding.
constexpr std::array<std::string_view, 9> imageExtensions = {"jpg",  "jpeg", "png",  "gif", "tif",
                                                             "tiff", "heic", "heif", "bmp"};

// Extensions of installers and executables, in this order. Only the extension counts: file
// permissions are never consulted, so a script without an extension gets no finding.
constexpr std::array<std::string_view, 11> installerExtensions = {
    "exe", "bat", "cmd", "scr", "vbs", "js", "sh", "command", "app", "dmg", "pkg"};

constexpr std::string_view pdfExtension = "pdf";

template <std::size_t N>
bool listed(const std::array<std::string_view, N>& extensions, std::string_view extension) {
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

}  // namespace

HealthCheckVersion healthCheckVersion(platform::Platform& platform) {
    // Raised whenever the tests themselves change, so that no finding of the old tests is kept.
    const std::string checks = "checks 1 • ";
    platform::Result<std::string> decoders = platform.decoderVersions();
    if (!decoders)
        return {.text = checks + "decoders not loaded: " + decoders.error().description,
                .known = false};
    return {.text = checks + *decoders, .known = true};
}

std::optional<std::string> healthIssue(const std::string& path, std::string_view lowerExtension,
                                       std::int64_t size, platform::Platform& platform) {
    // An empty file gets no other test.
    if (size <= 0)
        return std::string(emptyFileFinding);

    if (listed(imageExtensions, lowerExtension)) {
        switch (platform.probeImage(path)) {
            case platform::ImageProbe::notOpened:
                return std::string(imageNotOpenedFinding);
            case platform::ImageProbe::notDecoded:
                return std::string(imageNotDecodedFinding);
            case platform::ImageProbe::decoded:
                return std::nullopt;
        }
        return std::nullopt;
    }

    // A PDF that opens goes on to the installer test, which its extension never matches.
    if (lowerExtension == pdfExtension && !platform.pdfOpens(path))
        return std::string(pdfNotOpenedFinding);

    if (listed(installerExtensions, lowerExtension))
        return std::string(installerFinding);
    return std::nullopt;
}

}  // namespace quorrin::Engine
