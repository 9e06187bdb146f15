// PDF probing: the file is pinned here, and loaded by poppler in the media module.
#include "platform/pdf_probe.h"

#include "platform/media_module.h"
#include "platform/pinned_file.h"

namespace quorrin::platform {

bool pdfFileOpens(const std::string& path) {
    auto file = PinnedFile::open(path);
    if (!file)
        return false;
    return mediaModule().pdfOpens(file->name().c_str()) != 0;
}

}  // namespace quorrin::platform
