// Image probing through libvips: does a loader recognise the file, and does image 0 decode?
#pragma once

#include "platform/platform.h"

#include <string>

namespace quorrin::platform {

// notOpened when no loader recognises the file; notDecoded when image 0 cannot be reduced to a
// thumbnail of at most 512 pixels on its longer side with all of its image data read.
ImageProbe probeImageFile(const std::string& path);

}  // namespace quorrin::platform
