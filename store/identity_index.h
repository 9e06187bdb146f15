// IdentityIndex: where a file identity's row is, found by open addressing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace quorrin::store {

// The results cache is asked about every file a job compares, in the walk's order, which is no
// order of identities: a binary search over tens of thousands of rows missed the processor's
// cache at most of its steps. Here an identity hashes to a slot holding its row's position, and
// the row itself is the one other read. `IdentityAt` gives the identity (device, inode) of the
// row at a position.
class IdentityIndex {
public:
    using Identity = std::pair<std::uint64_t, std::uint64_t>;

    // Indexes rows 0 … count − 1, whose identities are distinct.
    template <typename IdentityAt>
    void build(std::size_t count, const IdentityAt& identityAt) {
        std::size_t capacity = 16;
        shift_ = 60;
        while (capacity < 2 * count) {
            capacity *= 2;
            --shift_;
        }
        slots_.assign(capacity, 0);
        for (std::size_t position = 0; position < count; ++position) {
            std::size_t at = slotOf(identityAt(position));
            while (slots_[at] != 0)
                at = (at + 1) & (slots_.size() - 1);
            slots_[at] = static_cast<std::uint32_t>(position + 1);
        }
    }

    // The position of the row with `identity`, if one was indexed.
    template <typename IdentityAt>
    std::optional<std::size_t> find(const Identity& identity, const IdentityAt& identityAt) const {
        if (slots_.empty())
            return std::nullopt;
        for (std::size_t at = slotOf(identity); slots_[at] != 0;
             at = (at + 1) & (slots_.size() - 1))
            if (identityAt(slots_[at] - 1) == identity)
                return slots_[at] - 1;
        return std::nullopt;
    }

    void clear() { slots_.clear(); }

private:
    // Fibonacci hashing: the high bits of the product, so that identities that differ in their
    // low bits alone (neighbouring inodes) spread over the table.
    std::size_t slotOf(const Identity& identity) const {
        const std::uint64_t mixed =
            (identity.second ^ identity.first * 0xC2B2AE3D27D4EB4Full) * 0x9E3779B97F4A7C15ull;
        return static_cast<std::size_t>(mixed >> shift_);
    }

    std::vector<std::uint32_t> slots_;  // a row's position + 1; 0: empty
    int shift_ = 60;                    // 64 − log2 of the slots' count
};

}  // namespace quorrin::store
