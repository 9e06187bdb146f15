// healthIssue(): the health check of one file, giving it at most one short finding.
#pragma once

#include "platform/platform.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorrin::Engine {

inline constexpr std::string_view emptyFileFinding = "Empty file • review before clearing";
inline constexpr std::string_view imageNotOpenedFinding = "Image could not be opened";
inline constexpr std::string_view imageNotDecodedFinding = "Image could not be decoded";
inline constexpr std::string_view pdfNotOpenedFinding =
    "PDF could not be opened • may be encrypted or damaged";
inline constexpr std::string_view installerFinding = "Installer or executable • review its source";

// The version of the checks and of the decoders (libvips, poppler) that give the findings, the
// decoders' as the libraries loaded now report them: a finding kept from another version is
// checked again, also after a library upgrade without a new build of Quorrin.
struct HealthCheckVersion {
    std::string text;
    // False when the decoders cannot be loaded: the text then names no version and no kept
    // finding is trusted.
    bool known = false;
};
// Asks the platform, which loads the decoders when no check has yet: a job asks once.
HealthCheckVersion healthCheckVersion(platform::Platform& platform = platform::system());

// The health check of one file; `lowerExtension` is already lower-cased, `size` as the scan
// recorded it (0 when none was reported). The first matching test wins: an empty file; an image
// of one of the nine decoded extensions that cannot be opened or decoded; a PDF that cannot be
// opened; an installer or executable by its extension. Findings are advice only: nothing is
// changed, and a file that cannot be read at all simply gets the finding its type leads to.
std::optional<std::string> healthIssue(const std::string& path, std::string_view lowerExtension,
                                       std::int64_t size,
                                       platform::Platform& platform = platform::system());

}  // namespace quorrin::Engine
