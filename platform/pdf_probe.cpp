// PDF probing through poppler: the document structure must load and must not be locked.
#include "platform/pdf_probe.h"

#include "platform/pinned_file.h"

#include <memory>
#include <mutex>

#include <poppler-document.h>
#include <poppler-global.h>

namespace quorrin::platform {
namespace {

void discardMessage(const std::string&, void*) {}

}  // namespace

bool pdfFileOpens(const std::string& path) {
    static std::once_flag once;
    // poppler reports what it repairs or cannot read in a damaged document ("Syntax Error …",
    // "Couldn't find trailer dictionary") on stderr by default. The answer already says that the
    // document is damaged, so the text is dropped instead of reaching the user's terminal.
    std::call_once(once, [] { poppler::set_debug_error_function(discardMessage, nullptr); });

    auto file = PinnedFile::open(path);
    if (!file)
        return false;
    // Loading parses the cross-reference table, the trailer and the catalogue; no page is
    // rendered. A document locked with a user password loads but reports itself locked, and
    // counts as not opened.
    std::unique_ptr<poppler::document> document(poppler::document::load_from_file(file->name()));
    return document != nullptr && !document->is_locked();
}

}  // namespace quorrin::platform
