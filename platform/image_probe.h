// Image probing through libvips: does a loader recognise the file, and does image 0 decode?
#pragma once

#include "platform/platform.h"

#include <string>

namespace quorrin::platform {

// notOpened when the path is not a regular file that can be opened (a symbolic link is not
// followed) or no libvips loader recognises its content; notDecoded when image 0 cannot be reduced
// to a thumbnail of at most 512 pixels on its longer side with all of its image data read, as for
// a truncated or corrupt file. Nothing is printed. Safe to call from several threads at once.
ImageProbe probeImageFile(const std::string& path);

}  // namespace quorrin::platform
