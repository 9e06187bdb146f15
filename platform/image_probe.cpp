#include "platform/image_probe.h"

#include <mutex>

#include <vips/vips.h>

namespace quorrin::platform {
namespace {

void quietLog(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

void startVips() {
    static std::once_flag once;
    std::call_once(once, [] {
        if (VIPS_INIT("quorrin") != 0)
            return;
        // Every probe reads a different file once: caching only costs memory.
        vips_cache_set_max(0);
        vips_cache_set_max_mem(0);
        vips_cache_set_max_files(0);
        // Keep libvips' warnings about damaged files out of the user's terminal.
        g_log_set_handler("VIPS",
                          static_cast<GLogLevelFlags>(G_LOG_LEVEL_WARNING | G_LOG_LEVEL_MESSAGE |
                                                      G_LOG_LEVEL_INFO | G_LOG_LEVEL_DEBUG),
                          quietLog, nullptr);
    });
}

}  // namespace

ImageProbe probeImageFile(const std::string& path) {
    startVips();
    if (vips_foreign_find_load(path.c_str()) == nullptr) {
        vips_error_clear();
        return ImageProbe::notOpened;
    }
    VipsImage* thumbnail = nullptr;
    // fail_on=error makes truncated or corrupt data a failure instead of a grey fill.
    int failed =
        vips_thumbnail(path.c_str(), &thumbnail, 512, "fail_on", VIPS_FAIL_ON_ERROR, nullptr);
    if (failed == 0 && thumbnail != nullptr) {
        // The thumbnail is lazy: computing one pixel row range forces the whole decode.
        double mean = 0;
        failed = vips_avg(thumbnail, &mean, nullptr);
    }
    if (thumbnail != nullptr)
        g_object_unref(thumbnail);
    vips_error_clear();
    return failed == 0 ? ImageProbe::decoded : ImageProbe::notDecoded;
}

}  // namespace quorrin::platform
