// Fuzz target: the settings reader, on any bytes a damaged or hostile file could hold.
//
// Whatever the text, decoding never crashes, hangs or leaks, and every string it hands on (the
// connected folders and the kept files) is valid UTF-8.
#include "engine/move_record.h"
#include "store/settings.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

void checkStrings(const std::optional<std::vector<std::string>>& strings) {
    if (!strings)
        return;
    for (const std::string& text : *strings)
        if (!quorrin::Engine::validUtf8(text))
            std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const quorrin::store::SettingsValues values = quorrin::store::decodeSettings(text);
    checkStrings(values.roots);
    checkStrings(values.kept);
    if (values.unreadable)
        std::abort();  // only reading a file can fail that way
    return 0;
}
