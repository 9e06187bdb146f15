// Loading the media module with dlopen, once, from the installed place or the build tree.
#include "platform/media_module.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <limits.h>
#include <unistd.h>

namespace quorrin::platform {
namespace {

// <program folder>/../lib/quorrin/ for an installed program.
std::string installedPath() {
    char buffer[PATH_MAX];
    ssize_t length = ::readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    if (length <= 0)
        return {};
    std::string program(buffer, static_cast<std::size_t>(length));
    std::size_t slash = program.rfind('/');
    if (slash == std::string::npos)
        return {};
    return program.substr(0, slash) + "/../lib/quorrin/" + mediaModuleFileName;
}

[[noreturn]] void cannotLoad(const std::string& reason) {
    std::fprintf(stderr, "quorrin: cannot load the image and PDF decoders (%s): %s\n",
                 mediaModuleFileName, reason.c_str());
    std::abort();
}

Result<MediaModule> load() {
    std::vector<std::string> candidates = {installedPath(), QUORRIN_MEDIA_MODULE};
    std::string reasons;
    for (const std::string& candidate : candidates) {
        if (candidate.empty() || ::access(candidate.c_str(), R_OK) != 0)
            continue;
        // Never closed: the decoders keep global state for the life of the process.
        void* handle = ::dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (handle == nullptr) {
            const char* error = ::dlerror();
            reasons += error ? error : candidate;
            reasons += "; ";
            continue;
        }
        MediaModule module;
        module.probeImage = reinterpret_cast<ProbeImageFunction>(::dlsym(handle, probeImageSymbol));
        module.pdfOpens = reinterpret_cast<PdfOpensFunction>(::dlsym(handle, pdfOpensSymbol));
        module.decoderVersions =
            reinterpret_cast<DecoderVersionsFunction>(::dlsym(handle, decoderVersionsSymbol));
        if (module.probeImage == nullptr || module.pdfOpens == nullptr ||
            module.decoderVersions == nullptr)
            return Error::quorrin(mediaModuleNotLoadedCode, candidate + " lacks its entry points");
        return module;
    }
    return Error::quorrin(mediaModuleNotLoadedCode, reasons.empty() ? "not found" : reasons);
}

}  // namespace

const Result<MediaModule>& loadedMediaModule() {
    static const Result<MediaModule> module = load();  // once, also across threads
    return module;
}

const MediaModule& mediaModule() {
    const Result<MediaModule>& module = loadedMediaModule();
    if (!module)
        cannotLoad(module.error().description);
    return *module;
}

}  // namespace quorrin::platform
