// The media module: libvips and poppler behind three C functions, loaded on first use.
#pragma once

#include "platform/platform.h"

namespace quorrin::platform {

// The module's entry points. `name` is a path the decoders may open by name (a pinned file's).
// quorrinProbeImage returns an ImageProbe value; quorrinPdfOpens returns 1 or 0;
// quorrinDecoderVersions returns the versions of the libvips and poppler the module runs on, as
// text that lives as long as the process.
extern "C" {
using ProbeImageFunction = int (*)(const char* name);
using PdfOpensFunction = int (*)(const char* name);
using DecoderVersionsFunction = const char* (*)();
}
inline constexpr const char* probeImageSymbol = "quorrinProbeImage";
inline constexpr const char* pdfOpensSymbol = "quorrinPdfOpens";
inline constexpr const char* decoderVersionsSymbol = "quorrinDecoderVersions";
inline constexpr const char* mediaModuleFileName = "libquorrin_media.so";

// The error of a module that cannot be loaded, in the "QUORRIN" domain.
inline constexpr int mediaModuleNotLoadedCode = 6;

struct MediaModule {
    ProbeImageFunction probeImage = nullptr;
    PdfOpensFunction pdfOpens = nullptr;
    DecoderVersionsFunction decoderVersions = nullptr;
};

// libvips and poppler bring in about a hundred shared libraries whose loading and start-up cost
// tens of milliseconds, more than a quick scan of thousands of files. They are kept out of the
// programs and loaded here, once, on the first image or PDF check, from
// <program folder>/../lib/quorrin/ when installed, else from the build tree. Safe to call from
// several threads at once.
//
// The module, or why it could not be loaded.
const Result<MediaModule>& loadedMediaModule();
// The module for a check. One that cannot be loaded is a broken installation: the process stops
// with a message rather than report every image and PDF as unreadable.
const MediaModule& mediaModule();

}  // namespace quorrin::platform
