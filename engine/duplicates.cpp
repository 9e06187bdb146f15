// Groups files by size, then by sample digest, then by full digest, and marks the later copies.
#include "engine/duplicates.h"

#include "engine/digest.h"
#include "engine/group_digest.h"
#include "engine/paths.h"

#include <algorithm>
#include <map>

namespace quorrin::Engine {
namespace {

std::string nameOf(const Entry& entry) {
    return std::string(lastComponent(entry.url));
}

// Whether an entry takes part at all: empty files are never duplicates, and a download in progress
// is not yet the file it will be.
bool compared(const Entry& entry) {
    return entry.size >= 1 && !entry.downloading;
}

// What the sampling of one size group decided: its notes, and its sample groups of two or more
// members (in the order of their sample digests), each sorted by path.
struct SizeGroupPlan {
    std::vector<std::string> notes;
    std::vector<std::vector<std::size_t>> sampleGroups;
};

}  // namespace

DuplicateAnalysis::DuplicateAnalysis(platform::Platform& platform, unsigned threads,
                                     StopRequest stop, Lookup lookup, LookupReady lookupReady)
    : queue_(threads == 0 ? digestThreads() : threads, platform, stop),
      stop_(std::move(stop)),
      lookup_(std::move(lookup)),
      lookupReady_(std::move(lookupReady)) {}

void DuplicateAnalysis::sample(const std::vector<Entry>& entries, std::size_t position) {
    if (lookup_ && lookupReady_ && (!setAside_.empty() || !lookupReady_())) {
        setAside_.push_back(position);
        sampleSetAside(entries, false);
        return;
    }
    sampleNow(entries, position);
}

void DuplicateAnalysis::sampleSetAside(const std::vector<Entry>& entries, bool wait) {
    if (setAside_.empty() || (!wait && !lookupReady_()))
        return;
    for (std::size_t position : setAside_)
        sampleNow(entries, position);
    setAside_.clear();
}

void DuplicateAnalysis::sampleNow(const std::vector<Entry>& entries, std::size_t position) {
    Member& member = members_[position];
    member.wholeSample = entries[position].size <= wholeSampleLimit;
    if (const CachedResults* known = lookup_ ? lookup_(position) : nullptr) {
        if (known->sampleDigest)
            member.knownSample = &*known->sampleDigest;
        if (known->fullDigest)
            member.knownFull = &*known->fullDigest;
    }
    if (member.knownSample == nullptr)
        member.sampleJob =
            queue_.add({.path = entries[position].url, .size = entries[position].size});
}

void DuplicateAnalysis::queueFullDigests(const std::vector<Entry>& entries,
                                         const std::vector<std::size_t>& group) {
    // A small file's sample digest already is its full digest, and the cache may know others:
    // those are not read again. The rest are read side by side, in parts of groupDigestWidth.
    std::vector<std::size_t> toRead;
    for (std::size_t member : group)
        if (!members_[member].wholeSample && members_[member].knownFull == nullptr)
            toRead.push_back(member);
    for (std::size_t start = 0; start < toRead.size(); start += groupDigestWidth) {
        const std::size_t end = std::min(toRead.size(), start + groupDigestWidth);
        std::vector<DigestJob> jobs;
        for (std::size_t i = start; i < end; ++i)
            jobs.push_back(
                {.path = entries[toRead[i]].url, .size = entries[toRead[i]].size, .full = true});
        const std::size_t first = jobs.size() == 1 ? queue_.add(std::move(jobs.front()))
                                                   : queue_.addGroup(std::move(jobs));
        for (std::size_t i = start; i < end; ++i)
            members_[toRead[i]].fullJob = first + (i - start);
    }
}

const ContentDigest* DuplicateAnalysis::read(std::size_t job,
                                             const std::function<void()>& meanwhile) {
    if (job == none)
        return nullptr;
    const auto& digest = queue_.wait(job, meanwhile);
    return digest ? &*digest : nullptr;
}

const ContentDigest* DuplicateAnalysis::sampleOf(const Member& member,
                                                 const std::function<void()>& meanwhile) {
    return member.knownSample != nullptr ? member.knownSample : read(member.sampleJob, meanwhile);
}

const ContentDigest* DuplicateAnalysis::fullOf(const Member& member,
                                               const std::function<void()>& meanwhile) {
    if (member.wholeSample)
        return sampleOf(member, meanwhile);
    return member.knownFull != nullptr ? member.knownFull : read(member.fullJob, meanwhile);
}

void DuplicateAnalysis::add(const std::vector<Entry>& entries, std::size_t position,
                            FileIdentity identity) {
    members_.push_back({.identity = identity});
    if (!compared(entries[position]))
        return;
    const std::int64_t size = entries[position].size;
    // A file is sampled as soon as a second file of its size turns up: by the end of the walk
    // every member of every size group of two or more has been queued.
    auto [seen, inserted] = sizes_.tryEmplace(size, [&] { return SizeSeen{.first = position}; });
    if (inserted)
        return;
    if (seen.group == none) {
        seen.group = groups_.size();
        groups_.push_back({seen.first});
        sample(entries, seen.first);
    }
    groups_[seen.group].push_back(position);
    sample(entries, position);
}

void DuplicateAnalysis::finish(std::vector<Entry>& entries, std::vector<std::string>& notes,
                               const Progress& progress, const ProgressAmount& amount) {
    sampleSetAside(entries, true);
    // Size groups in the order of their first members, so that notes arrive in a repeatable
    // order; each lists its members in list order.
    std::vector<std::vector<std::size_t>> groups = std::move(groups_);
    std::sort(groups.begin(), groups.end(),
              [](const auto& a, const auto& b) { return a.front() < b.front(); });

    // Known now that the walk is over: every member of a size group is sampled, and may need its
    // full digest.
    // What is read of each file: nothing that the cache already holds, and no full digest of a
    // small file, whose sample is read whole.
    const auto sampleBytes = [&](std::size_t member) {
        return members_[member].knownSample ? 0 : jobReadBytes(entries[member].size, false);
    };
    const auto fullBytes = [&](std::size_t member) {
        return members_[member].wholeSample || members_[member].knownFull
                   ? 0
                   : jobReadBytes(entries[member].size, true);
    };
    std::int64_t total = 0;
    for (const auto& group : groups)
        for (std::size_t member : group)
            total += sampleBytes(member) + fullBytes(member);
    std::int64_t lastPermille = -1;
    const auto report = [&] {
        if (!amount || total == 0)
            return;
        const std::int64_t done = std::min(queue_.bytesDone(), total);
        // Only a visible change is worth a report: a thousandth of the whole.
        const std::int64_t permille = done * 1000 / total;
        if (permille == lastPermille)
            return;
        lastPermille = permille;
        amount(done, total);
    };
    report();

    // First pass: each size group's samples, grouped exactly as the one-thread walk groups them.
    // The full digests of the sample groups are queued once all are known, the group with the most
    // bytes to read first: the workers are busy with samples until then, and a large group left
    // for last would keep one core hashing while the others wait.
    std::vector<SizeGroupPlan> plans(groups.size());
    struct FullRead {
        std::int64_t bytes;
        std::size_t plan;
        std::size_t group;
    };
    std::vector<FullRead> fullReads;
    std::vector<std::pair<const ContentDigest*, std::size_t>> bySample;
    for (std::size_t g = 0; g < groups.size(); ++g) {
        if (stop_.requested())
            return;
        // The members by sample digest and then by list position: equal samples side by side,
        // each run in list order, and the runs in digest order, which keeps the visiting order
        // of sample groups repeatable. The digests are the queue's or the cache's own, which
        // stay in place.
        bySample.clear();
        for (std::size_t member : groups[g]) {
            const ContentDigest* sampled = sampleOf(members_[member], report);
            report();
            if (sampled == nullptr)
                plans[g].notes.push_back("Could not sample " + nameOf(entries[member]));
            else
                bySample.emplace_back(sampled, member);
        }
        std::sort(bySample.begin(), bySample.end(), [](const auto& a, const auto& b) {
            return *a.first != *b.first ? *a.first < *b.first : a.second < b.second;
        });
        // Files whose sample is unique, or that could not be sampled, are read no further.
        std::int64_t readNoFurther = 0;
        for (std::size_t member : groups[g])
            readNoFurther += fullBytes(member);
        for (auto run = bySample.begin(); run != bySample.end();) {
            auto end = std::find_if(run, bySample.end(),
                                    [&](const auto& other) { return *other.first != *run->first; });
            if (end - run < 2) {
                run = end;
                continue;
            }
            std::vector<std::size_t> members;
            for (; run != end; ++run)
                members.push_back(run->second);
            std::int64_t bytes = 0;
            for (std::size_t member : members)
                bytes += fullBytes(member);
            readNoFurther -= bytes;
            std::sort(members.begin(), members.end(), [&](std::size_t a, std::size_t b) {
                return entries[a].url < entries[b].url;
            });
            fullReads.push_back({bytes, g, plans[g].sampleGroups.size()});
            plans[g].sampleGroups.push_back(std::move(members));
        }
        total -= readNoFurther;
        report();
    }
    std::stable_sort(fullReads.begin(), fullReads.end(),
                     [](const FullRead& a, const FullRead& b) { return a.bytes > b.bytes; });
    for (const FullRead& read : fullReads)
        queueFullDigests(entries, plans[read.plan].sampleGroups[read.group]);

    // Second pass: the notes of each size group, then its sample groups member by member in path
    // order: the first path with a digest is the retained copy and every later one with that
    // digest points at it.
    for (const SizeGroupPlan& plan : plans) {
        notes.insert(notes.end(), plan.notes.begin(), plan.notes.end());
        for (const auto& group : plan.sampleGroups) {
            std::map<ContentDigest, std::size_t> firstWithDigest;
            for (std::size_t member : group) {
                if (stop_.requested())
                    return;
                Entry& entry = entries[member];
                if (progress)
                    progress("Comparing content • " + nameOf(entry));
                const ContentDigest* full = fullOf(members_[member], report);
                report();
                if (full == nullptr) {
                    notes.push_back("Could not compare " + nameOf(entry));
                    continue;
                }
                auto [found, inserted] = firstWithDigest.emplace(*full, member);
                if (inserted)
                    continue;
                // The same file reached under a second path is not a copy of itself.
                if (members_[found->second].identity == members_[member].identity)
                    continue;
                entry.duplicateOf = entries[found->second].url;
            }
        }
    }
}

const ContentDigest* DuplicateAnalysis::sampleDigestRead(std::size_t position) {
    return read(members_[position].sampleJob);
}

const ContentDigest* DuplicateAnalysis::fullDigestRead(std::size_t position) {
    // A small file's full digest is its sample's, kept once.
    return read(members_[position].fullJob);
}

void markDuplicates(std::vector<Entry>& entries, const std::vector<FileIdentity>& identities,
                    std::vector<std::string>& notes, const Progress& progress,
                    platform::Platform& platform, unsigned threads, const ProgressAmount& amount) {
    DuplicateAnalysis analysis(platform, threads);
    // Fed in as a walk would; with no identities every path counts as a file of its own.
    for (std::size_t i = 0; i < entries.size(); ++i)
        analysis.add(entries, i,
                     identities.empty() ? FileIdentity{.device = 0, .inode = i} : identities[i]);
    analysis.finish(entries, notes, progress, amount);
}

}  // namespace quorrin::Engine
