// Image decoding through libvips, inside the media module: a loader must recognise the file and
// decode all of image 0.
#include "platform/media_module.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>

#include <vips/vips.h>

namespace quorrin::platform {
namespace {

constexpr int thumbnailSize = 512;
// libjpeg decodes at 1/2, 1/4 or 1/8 scale while still reading every coefficient of the file.
constexpr int largestJpegShrink = 8;

struct ImageRelease {
    void operator()(VipsImage* image) const { g_object_unref(image); }
};
using Image = std::unique_ptr<VipsImage, ImageRelease>;

void discardMessage(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

bool startVips() {
    static bool started = false;
    static std::once_flag once;
    std::call_once(once, [] {
        // Loaders report damaged files as GLib warnings in the "VIPS" domain ("error in tile …",
        // "Unexpected end of GIF source data"). The probe's answer already says that the file is
        // damaged, so the text is dropped instead of reaching the user's terminal. Installed
        // before start-up, so that notes about optional loader modules are dropped as well.
        g_log_set_handler("VIPS",
                          static_cast<GLogLevelFlags>(G_LOG_LEVEL_WARNING | G_LOG_LEVEL_MESSAGE |
                                                      G_LOG_LEVEL_INFO | G_LOG_LEVEL_DEBUG),
                          discardMessage, nullptr);
        if (VIPS_INIT("quorrin") != 0)
            return;
        // Each probe reads a different file once; a cache would only hold memory and descriptors,
        // and could answer for a file that has changed since.
        vips_cache_set_max(0);
        vips_cache_set_max_mem(0);
        vips_cache_set_max_files(0);
        // A probe decodes one image sequentially into a thumbnail of at most 512 pixels: the
        // loader is the bottleneck and cannot be split, so extra workers per probe would only
        // wait. Parallelism, when wanted, comes from probing several files on several threads.
        vips_concurrency_set(1);
        // Error texts are never shown; without this every failed probe would append to libvips'
        // process-wide error buffer.
        vips_error_freeze();
        started = true;
    });
    return started;
}

// Loads image 0 lazily: decoding happens when its pixels are computed. Sequential access lets the
// loader stream rows instead of decoding the whole image into memory first; fail_on=error makes
// truncated or corrupt image data a failure instead of a grey fill. Warnings that every viewer
// tolerates (extraneous bytes between JPEG markers and the like) do not fail.
Image load(const std::string& name, int jpegShrink) {
    VipsImage* image =
        jpegShrink > 1
            ? vips_image_new_from_file(name.c_str(), "access", VIPS_ACCESS_SEQUENTIAL, "fail_on",
                                       VIPS_FAIL_ON_ERROR, "shrink", jpegShrink, nullptr)
            : vips_image_new_from_file(name.c_str(), "access", VIPS_ACCESS_SEQUENTIAL, "fail_on",
                                       VIPS_FAIL_ON_ERROR, nullptr);
    return Image(image);
}

int longerSide(VipsImage* image) {
    return std::max(vips_image_get_width(image), vips_image_get_height(image));
}

// True when image 0 could be reduced to a thumbnail of at most 512 pixels on its longer side.
// Image 0 is loaded directly, not through vips_thumbnail(): that would take a HEIF file's embedded
// preview or a smaller page of a TIFF pyramid when one is large enough, and then the image's own
// data would never be read.
bool decodes(const std::string& name, const char* loader) {
    Image image = load(name, 1);
    if (!image)
        return false;
    if (std::strcmp(loader, "VipsForeignLoadJpegFile") == 0) {
        int shrink = 1;
        while (shrink < largestJpegShrink &&
               longerSide(image.get()) / (shrink * 2) >= thumbnailSize)
            shrink *= 2;
        if (shrink > 1) {
            image = load(name, shrink);
            if (!image)
                return false;
        }
    }

    Image thumbnail;
    int longer = longerSide(image.get());
    if (longer > thumbnailSize) {
        VipsImage* reduced = nullptr;
        if (vips_resize(image.get(), &reduced, static_cast<double>(thumbnailSize) / longer,
                        nullptr) != 0)
            return false;
        thumbnail.reset(reduced);
    } else {
        thumbnail = std::move(image);
    }
    // Computing every pixel of the thumbnail pulls every row of image 0 through the loader.
    double mean = 0;
    return vips_avg(thumbnail.get(), &mean, nullptr) == 0;
}

ImageProbe probe(const std::string& name) {
    if (!startVips())
        return ImageProbe::notOpened;
    const char* loader = vips_foreign_find_load(name.c_str());
    if (loader == nullptr)
        return ImageProbe::notOpened;
    return decodes(name, loader) ? ImageProbe::decoded : ImageProbe::notDecoded;
}

}  // namespace
}  // namespace quorrin::platform

// The module's entry point; `name` names a regular file the caller holds open.
extern "C" __attribute__((visibility("default"))) int quorrinProbeImage(const char* name) {
    return static_cast<int>(quorrin::platform::probe(name));
}
