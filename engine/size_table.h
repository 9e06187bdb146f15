// SizeTable: a value per file size, found by open addressing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace quorrin::Engine {

// The duplicate analysis looks up the size of every file the walk lists; with a node per size
// the look-ups were a chain of cache misses each. Here a size and its value sit side by side in
// one array, probed linearly from the size's hash. Sizes must be positive.
template <typename Value>
class SizeTable {
public:
    // The value kept for `size`, made from `make` when the size is new; `inserted` says which.
    // The reference is valid until the next call.
    template <typename Make>
    std::pair<Value&, bool> tryEmplace(std::int64_t size, Make&& make) {
        if ((used_ + 1) * 4 > slots_.size() * 3)
            grow();
        Slot& slot = probe(slots_, size);
        if (slot.size == size)
            return {slot.value, false};
        slot.size = size;
        slot.value = make();
        ++used_;
        return {slot.value, true};
    }

private:
    struct Slot {
        std::int64_t size = 0;  // 0: empty
        Value value{};
    };

    static Slot& probe(std::vector<Slot>& slots, std::int64_t size) {
        const std::size_t mask = slots.size() - 1;
        // Fibonacci hashing spreads sizes that differ in their low bits alone.
        std::size_t at = static_cast<std::size_t>(
                             static_cast<std::uint64_t>(size) * 0x9E3779B97F4A7C15ull >> 20) &
                         mask;
        while (slots[at].size != 0 && slots[at].size != size)
            at = (at + 1) & mask;
        return slots[at];
    }

    void grow() {
        std::vector<Slot> larger(slots_.empty() ? 1024 : slots_.size() * 2);
        for (Slot& slot : slots_)
            if (slot.size != 0)
                probe(larger, slot.size) = std::move(slot);
        slots_ = std::move(larger);
    }

    std::vector<Slot> slots_;
    std::size_t used_ = 0;
};

}  // namespace quorrin::Engine
