// The packed form of a results-cache row: a flags byte; size, modification and status-change
// times as 8-byte little-endian integers; the digests present, 32 bytes each; the texts present,
// each as a 4-byte little-endian length and its bytes.
#include "store/packed_row.h"

#include <cstring>

namespace quorrin::store {
namespace {

enum Flag : std::uint8_t {
    hasSample = 1,
    hasFull = 2,
    checked = 4,
    hasFinding = 8,
    hasDecoders = 16,
};
constexpr std::uint8_t knownFlags = hasSample | hasFull | checked | hasFinding | hasDecoders;

void putInteger(std::uint64_t value, int bytes, std::string& into) {
    for (int i = 0; i < bytes; ++i)
        into.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
}

// Reads the blob front to back; any read past its end leaves it failed.
class Reader {
public:
    explicit Reader(std::string_view blob) : rest_(blob) {}

    bool failed() const { return failed_; }
    bool atEnd() const { return rest_.empty(); }

    std::uint64_t integer(std::size_t bytes) {
        if (!take(bytes))
            return 0;
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < bytes; ++i)
            value |= static_cast<std::uint64_t>(static_cast<std::uint8_t>(taken_[i])) << (8 * i);
        return value;
    }

    std::optional<Engine::ContentDigest> digest() {
        Engine::ContentDigest digest;
        if (!take(digest.bytes.size()))
            return std::nullopt;
        std::memcpy(digest.bytes.data(), taken_.data(), digest.bytes.size());
        return digest;
    }

    std::optional<std::string_view> text() {
        const auto length = static_cast<std::size_t>(integer(4));
        if (failed_ || !take(length))
            return std::nullopt;
        return taken_;
    }

private:
    bool take(std::size_t bytes) {
        if (failed_ || rest_.size() < bytes) {
            failed_ = true;
            return false;
        }
        taken_ = rest_.substr(0, bytes);
        rest_.remove_prefix(bytes);
        return true;
    }

    std::string_view rest_, taken_;
    bool failed_ = false;
};

}  // namespace

void pack(const PackedRow& row, std::string& into) {
    into.clear();
    into.push_back(static_cast<char>((row.sample ? hasSample : 0) | (row.full ? hasFull : 0) |
                                     (row.checked ? checked : 0) | (row.finding ? hasFinding : 0) |
                                     (row.decoders ? hasDecoders : 0)));
    for (std::int64_t value : {row.size, row.modified, row.changed})
        putInteger(static_cast<std::uint64_t>(value), 8, into);
    for (const auto& digest : {row.sample, row.full})
        if (digest)
            into.append(reinterpret_cast<const char*>(digest->bytes.data()), digest->bytes.size());
    for (const auto& text : {row.finding, row.decoders})
        if (text) {
            putInteger(text->size(), 4, into);
            into.append(*text);
        }
}

std::optional<PackedRow> unpack(std::string_view blob) {
    Reader reader(blob);
    const auto flags = static_cast<std::uint8_t>(reader.integer(1));
    if (reader.failed() || (flags & ~knownFlags) != 0)
        return std::nullopt;
    PackedRow row;
    row.size = static_cast<std::int64_t>(reader.integer(8));
    row.modified = static_cast<std::int64_t>(reader.integer(8));
    row.changed = static_cast<std::int64_t>(reader.integer(8));
    if (flags & hasSample)
        row.sample = reader.digest();
    if (flags & hasFull)
        row.full = reader.digest();
    row.checked = (flags & checked) != 0;
    if (flags & hasFinding)
        row.finding = reader.text();
    if (flags & hasDecoders)
        row.decoders = reader.text();
    if (reader.failed() || !reader.atEnd())
        return std::nullopt;
    return row;
}

}  // namespace quorrin::store
