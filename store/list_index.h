// ListIndex: the name order and the search text of a file list, computed once and kept.
#pragma once

#include "engine/entry.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quorrin::store {

// The file lists are recomputed on every keystroke in the search field, over up to hundreds of
// thousands of files. Building the collation key of every name and case-folding every path are the
// costly steps, and both depend only on the paths, so an index keeps, per list of entries (the
// Store's files, its find-older files): the positions in name order, and the case-folded paths in
// one buffer. Each use checks that the list still holds the same paths in the same order (a
// sequential comparison, far cheaper than the keys) and starts afresh when it does not, so an
// index can never answer for another list. One index belongs to one thread (the interface's).
class ListIndex {
public:
    // The keys of one list, as they stand after the last keysFor() of that list.
    class ListKeys {
    public:
        // The positions of the list sorted by file name (last path component) as a file manager
        // sorts: the user's locale, numbers compared by value (file2.txt before file10.txt);
        // entries whose names collate equal keep their order in the list. Computed on first
        // request.
        const std::vector<std::uint32_t>& nameOrder();
        // For each position, 1 when the path contains `query`, ignoring case: when the case-folded
        // path (full Unicode case folding, UTF-8, bytes that are not UTF-8 standing as U+FFFD)
        // contains the case-folded query. The folded paths are computed for the whole list on
        // first request and searched as one buffer.
        std::vector<std::uint8_t> matching(std::string_view query);

    private:
        friend class ListIndex;
        const std::vector<Engine::Entry>* list_ = nullptr;
        std::uint64_t lastUse_ = 0;
        // The paths the keys below were made from, one after the other.
        std::string paths_;
        std::vector<std::size_t> pathEnds_;
        bool hasOrder_ = false;
        std::vector<std::uint32_t> order_;
        // The folded paths, each followed by a NUL byte (which no path holds), so that no match
        // runs from one into the next.
        bool hasFolded_ = false;
        std::string folded_;
        std::vector<std::size_t> foldedEnds_;
    };

    // The keys of `list`, started afresh when the list no longer holds the paths they were made
    // from. The reference stays valid until the next call.
    ListKeys& keysFor(const std::vector<Engine::Entry>& list);

    static std::string fold(std::string_view text);
    // Bytewise comparison of two keys orders the names as described for nameOrder().
    static std::string collationKey(std::string_view name);

private:
    static bool holds(const ListKeys& keys, const std::vector<Engine::Entry>& list);

    std::array<ListKeys, 2> lists_;
    std::uint64_t uses_ = 0;
};

}  // namespace quorrin::store
