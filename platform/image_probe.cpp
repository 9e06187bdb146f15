// Image probing: the file is pinned here, and decoded by libvips in the media module.
#include "platform/image_probe.h"

#include "platform/media_module.h"
#include "platform/pinned_file.h"

namespace quorrin::platform {

ImageProbe probeImageFile(const std::string& path) {
    auto file = PinnedFile::open(path);
    if (!file)
        return ImageProbe::notOpened;
    return static_cast<ImageProbe>(mediaModule().probeImage(file->name().c_str()));
}

}  // namespace quorrin::platform
