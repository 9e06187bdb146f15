#include "platform/pdf_probe.h"

#include <memory>
#include <mutex>

#include <poppler-document.h>
#include <poppler-global.h>

namespace quorrin::platform {
namespace {

void quietPoppler(const std::string&, void*) {}

}  // namespace

bool pdfFileOpens(const std::string& path) {
    static std::once_flag once;
    // Keep poppler's complaints about damaged files out of the user's terminal.
    std::call_once(once, [] { poppler::set_debug_error_function(quietPoppler, nullptr); });
    std::unique_ptr<poppler::document> document(poppler::document::load_from_file(path));
    return document != nullptr && !document->is_locked();
}

}  // namespace quorrin::platform
