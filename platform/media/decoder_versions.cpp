// The versions of libvips and poppler, as the libraries loaded with the media module report them.
#include "platform/media_module.h"

#include <string>

#include <poppler-version.h>
#include <vips/vips.h>

// The module's entry point. Asked of the libraries themselves, not of the headers the module was
// built with: after an upgrade of either library the text changes without a new build.
extern "C" __attribute__((visibility("default"))) const char* quorrinDecoderVersions() {
    static const std::string versions =
        std::string("libvips ") + vips_version_string() + " • poppler " + poppler::version_string();
    return versions.c_str();
}
