// Fuzz target: the .trashinfo writer and reader and the percent-encoding of paths.
//
// Any path bytes (newlines, "%", bytes that are not UTF-8) survive encoding and decoding exactly,
// and a record written for them reads back with the same path; any text at all, handed to the
// reader or the decoder, never crashes, hangs or leaks.
#include "platform/trash/percent_encoding.h"
#include "platform/trash/trash_info.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quorrin::platform;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);

    // Arbitrary text read as a record or decoded: no crash, and a decoded path re-encodes to
    // text that decodes to it again.
    (void)parseTrashInfo(bytes);
    if (auto decoded = percentDecode(bytes)) {
        if (percentDecode(percentEncodePath(*decoded)) != decoded)
            std::abort();
    }

    // The bytes as a path: exact round trips through the encoding and a whole record.
    const std::string encoded = percentEncodePath(bytes);
    if (encoded.find_first_of("\n\r") != std::string::npos)
        std::abort();  // a line break would end the Path= line early
    if (percentDecode(encoded) != std::string(bytes))
        std::abort();
    std::int64_t nanoseconds = 0;
    std::memcpy(&nanoseconds, data, std::min(size, sizeof nanoseconds));
    const Instant when{std::chrono::nanoseconds(nanoseconds)};
    auto info = parseTrashInfo(trashInfoText(bytes, when));
    if (!info || info->path != bytes || info->deletionDate.empty())
        std::abort();
    return 0;
}
