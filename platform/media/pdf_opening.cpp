// PDF opening through poppler, inside the media module: the document structure must load and
// must not be locked.
#include "platform/media_module.h"

#include <memory>
#include <mutex>

#include <poppler-document.h>
#include <poppler-global.h>

namespace quorrin::platform {
namespace {

void discardMessage(const std::string&, void*) {}

bool opens(const char* name) {
    static std::once_flag once;
    // poppler reports what it repairs or cannot read in a damaged document ("Syntax Error …",
    // "Couldn't find trailer dictionary") on stderr by default. The answer already says that the
    // document is damaged, so the text is dropped instead of reaching the user's terminal.
    std::call_once(once, [] { poppler::set_debug_error_function(discardMessage, nullptr); });

    // Loading parses the cross-reference table, the trailer and the catalogue; no page is
    // rendered. A document locked with a user password loads but reports itself locked, and
    // counts as not opened.
    std::unique_ptr<poppler::document> document(poppler::document::load_from_file(name));
    return document != nullptr && !document->is_locked();
}

}  // namespace
}  // namespace quorrin::platform

// The module's entry point; `name` names a regular file the caller holds open.
extern "C" __attribute__((visibility("default"))) int quorrinPdfOpens(const char* name) {
    return quorrin::platform::opens(name) ? 1 : 0;
}
