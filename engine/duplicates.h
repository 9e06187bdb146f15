// The duplicate analysis: marks every file whose content is byte-identical to an earlier one.
#pragma once

#include "engine/digest_queue.h"
#include "engine/entry.h"
#include "engine/progress.h"
#include "engine/results_cache.h"
#include "engine/size_table.h"
#include "platform/platform.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quorrin::Engine {

// Which file an entry's path names: two paths with one identity (hard links, a folder reached
// twice through a link) are one file, never duplicates of each other.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    bool operator==(const FileIdentity&) const = default;
};

// Compares files by size, then by sample digest, then by full SHA-256, and sets `duplicateOf` of
// every copy to the path of the retained one: among identical files, the one whose path sorts
// first among those that could be read. Empty files and downloads in progress are never compared;
// the same file under two paths is not a copy of itself. Failures become notes ("Could not sample
// …", "Could not compare …").
//
// The scanner feeds each entry in as the walk lists it, so that files are read and hashed on
// worker threads while the walk goes on; finish() then walks the size groups (in the order of
// their first members), the sample groups (in digest order) and their members (in path order)
// exactly as reading one file at a time would, waiting for each digest it needs. The marks, the
// retained copies, the notes and their order, and the progress texts and their order are those
// of the one-thread analysis; only the moment each file is read differs. Progress is called on
// the thread that calls finish().
class DuplicateAnalysis {
public:
    // What an earlier job computed for entries[position] (nullptr: nothing); the results must
    // stay in place while the analysis lives. Asked once for each file that is compared at all,
    // on the thread that calls add() and finish(), so that the many files of a size of their own
    // cost no look-up.
    using Lookup = std::function<const CachedResults*(std::size_t position)>;
    // Whether the lookup answers without waiting. Until it does, the files to sample are set
    // aside, so that the walk goes on while the cache is read; they are looked up (and queued)
    // together once it answers, at the latest in finish().
    using LookupReady = std::function<bool()>;

    // `threads`: how many threads read and hash; 0 for digestThreads().
    // A stop requested through `stop` abandons the reading; finish() then returns at once, with
    // the marks incomplete (the caller discards them).
    explicit DuplicateAnalysis(platform::Platform& platform = platform::system(),
                               unsigned threads = 0, StopRequest stop = {}, Lookup lookup = {},
                               LookupReady lookupReady = {});

    // Called for each entry of `entries` in turn (positions 0, 1, 2, …) as soon as the walk has
    // appended it, with what it names; earlier entries must still be in the list.
    void add(const std::vector<Entry>& entries, std::size_t position, FileIdentity identity);
    // Marks the duplicates in `entries` (the list that was fed in, complete), appends the notes.
    // `amount` hears the bytes read out of the bytes to read: every sample of a size group, and
    // the full digest of every member of a sample group (counted for all members of size groups
    // at first, then taken off for those whose sample turns out unique).
    void finish(std::vector<Entry>& entries, std::vector<std::string>& notes,
                const Progress& progress, const ProgressAmount& amount = {});
    // After finish(): the sample and full digests of entries[position] that this analysis read
    // itself, for the cache to keep; nullptr when it read none (never needed, known from the
    // cache already, or not readable).
    const ContentDigest* sampleDigestRead(std::size_t position);
    const ContentDigest* fullDigestRead(std::size_t position);

private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    // Per entry: its identity, its digests known from the cache (pointing into the results the
    // lookup gave), and the queue's jobs for the digests that are not known (none: no job).
    struct Member {
        bool wholeSample = false;  // a small file, whose sample digest is its full digest
        FileIdentity identity;
        const ContentDigest* knownSample = nullptr;
        const ContentDigest* knownFull = nullptr;
        std::size_t sampleJob = none;
        std::size_t fullJob = none;
    };

    // Queues the sample digest of entries[position], unless the cache knows it; sets it aside
    // while the lookup is not ready.
    void sample(const std::vector<Entry>& entries, std::size_t position);
    void sampleNow(const std::vector<Entry>& entries, std::size_t position);
    // Samples what was set aside, in the order it came; `wait`: even if the lookup is not ready.
    void sampleSetAside(const std::vector<Entry>& entries, bool wait);
    // Queues the full digests a sample group's members need, read side by side.
    void queueFullDigests(const std::vector<Entry>& entries, const std::vector<std::size_t>& group);
    // A member's digests, known or read (waiting for the read); nullptr when it could not be read.
    const ContentDigest* sampleOf(const Member& member, const std::function<void()>& meanwhile);
    const ContentDigest* fullOf(const Member& member, const std::function<void()>& meanwhile);
    const ContentDigest* read(std::size_t job, const std::function<void()>& meanwhile = {});

    DigestQueue queue_;
    StopRequest stop_;
    Lookup lookup_;
    LookupReady lookupReady_;
    std::vector<std::size_t> setAside_;
    // Per size: its first entry, and its group in groups_ once a second entry of that size has
    // turned up (none until then).
    struct SizeSeen {
        std::size_t first = 0;
        std::size_t group = none;
    };
    SizeTable<SizeSeen> sizes_;
    // The size groups of two or more compared entries, each in list order.
    std::vector<std::vector<std::size_t>> groups_;
    std::vector<Member> members_;
};

// The whole analysis over a finished list. `identities` is parallel to `entries`, or empty when
// unknown (then no two paths count as one file).
void markDuplicates(std::vector<Entry>& entries, const std::vector<FileIdentity>& identities,
                    std::vector<std::string>& notes, const Progress& progress,
                    platform::Platform& platform = platform::system(), unsigned threads = 0,
                    const ProgressAmount& amount = {});

}  // namespace quorrin::Engine
