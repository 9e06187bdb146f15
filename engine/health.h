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

// The health check of one file; `lowerExtension` is already lower-cased, `size` as the scan
// recorded it (0 when none was reported). The first matching test wins: an empty file; an image
// of one of the nine decoded extensions that cannot be opened or decoded; a PDF that cannot be
// opened; an installer or executable by its extension. Findings are advice only: nothing is
// changed, and a file that cannot be read at all simply gets the finding its type leads to.
// The version of the checks and of the decoders (libvips, poppler) that give the findings: a
// finding kept from another version is checked again.
std::string_view healthCheckVersion();

std::optional<std::string> healthIssue(const std::string& path, std::string_view lowerExtension,
                                       std::int64_t size,
                                       platform::Platform& platform = platform::system());

}  // namespace quorrin::Engine
