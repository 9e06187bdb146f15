// Fuzz target: the undo history reader, on any bytes a damaged or hostile file could hold.
//
// Whatever the text, decoding never crashes, hangs or leaks; a history that decodes is written
// back by the encoder to a text that decodes to the very same records.
#include "store/history_file.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto records = quorrin::store::decodeHistory(text);
    if (records.empty())
        return 0;
    for (const auto& record : records) {
        // The reader accepts only what the writer could have written.
        if (!quorrin::Engine::validUtf8(record.from) || !quorrin::Engine::validUtf8(record.to))
            std::abort();
    }
    if (quorrin::store::decodeHistory(quorrin::store::encodeHistory(records)) != records)
        std::abort();
    return 0;
}
