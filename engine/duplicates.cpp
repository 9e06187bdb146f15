#include "engine/duplicates.h"

#include "engine/digest_pipeline.h"
#include "engine/paths.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <unordered_map>

namespace quorrin::Engine {
namespace {

// What the sampling of one size group decided: its notes, and its sample groups of two or more
// members (in the order of their sample digests), each sorted by path.
struct SizeGroupPlan {
    std::vector<std::string> notes;
    std::vector<std::vector<std::size_t>> sampleGroups;
};

// Size groups of two or more non-empty files, each in list order, in the order of their first
// members, so that notes arrive in a repeatable order.
std::vector<std::vector<std::size_t>> sizeGroups(const std::vector<Entry>& entries) {
    std::unordered_map<std::int64_t, std::size_t> groupOfSize;
    std::vector<std::vector<std::size_t>> groups;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].size < 1)
            continue;  // empty files are never duplicates
        auto [found, inserted] = groupOfSize.emplace(entries[i].size, groups.size());
        if (inserted)
            groups.emplace_back();
        groups[found->second].push_back(i);
    }
    std::erase_if(groups, [](const auto& group) { return group.size() < 2; });
    return groups;
}

// The order in which workers claim the jobs for `files` (entry positions): by device and inode
// when the identities are known, which on most file systems is close to the order on disk.
std::vector<std::size_t> claimOrder(const std::vector<std::size_t>& files,
                                    const std::vector<FileIdentity>& identities) {
    std::vector<std::size_t> order(files.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    if (identities.empty())
        return order;
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        const FileIdentity& x = identities[files[a]];
        const FileIdentity& y = identities[files[b]];
        return x.device != y.device ? x.device < y.device : x.inode < y.inode;
    });
    return order;
}

std::string nameOf(const Entry& entry) {
    return std::string(lastComponent(entry.url));
}

class Comparison {
public:
    Comparison(std::vector<Entry>& entries, const std::vector<FileIdentity>& identities,
               std::vector<std::string>& notes, const Progress& progress,
               platform::Platform& platform, unsigned threads)
        : entries_(entries),
          identities_(identities),
          notes_(notes),
          progress_(progress),
          platform_(platform),
          threads_(threads) {}

    void run() {
        const std::vector<std::vector<std::size_t>> groups = sizeGroups(entries_);
        if (groups.empty())
            return;
        std::vector<SizeGroupPlan> plans = sample(groups);
        compare(plans);
    }

private:
    // Step one: the sample digest of every member of every size group, read on the workers and
    // grouped here exactly as a walk over the groups in order would group them.
    std::vector<SizeGroupPlan> sample(const std::vector<std::vector<std::size_t>>& groups) {
        std::vector<std::size_t> files;
        for (const auto& group : groups)
            files.insert(files.end(), group.begin(), group.end());
        std::vector<DigestJob> jobs;
        jobs.reserve(files.size());
        for (std::size_t file : files)
            jobs.push_back({&entries_[file].url, entries_[file].size, false});
        DigestPipeline pipeline(std::move(jobs), claimOrder(files, identities_), threads_,
                                platform_);

        std::vector<SizeGroupPlan> plans(groups.size());
        std::size_t position = 0;
        for (std::size_t g = 0; g < groups.size(); ++g) {
            // An ordered map keeps the visiting order of sample groups deterministic.
            std::map<std::string, std::vector<std::size_t>> bySample;
            for (std::size_t member : groups[g]) {
                const auto& result = pipeline.wait(position++);
                if (!result)
                    plans[g].notes.push_back("Could not sample " + nameOf(entries_[member]));
                else
                    bySample[*result].push_back(member);
            }
            for (auto& [digest, members] : bySample) {
                if (members.size() < 2)
                    continue;
                std::sort(members.begin(), members.end(), [&](std::size_t a, std::size_t b) {
                    return entries_[a].url < entries_[b].url;
                });
                plans[g].sampleGroups.push_back(std::move(members));
            }
        }
        return plans;
    }

    // Step two: the full digest of every member of every sample group, read on the workers and
    // walked here in path order per group: the first path with a digest is the retained copy and
    // every later one with that digest points at it.
    void compare(const std::vector<SizeGroupPlan>& plans) {
        std::vector<std::size_t> files;
        for (const auto& plan : plans)
            for (const auto& group : plan.sampleGroups)
                files.insert(files.end(), group.begin(), group.end());
        std::vector<DigestJob> jobs;
        jobs.reserve(files.size());
        for (std::size_t file : files)
            jobs.push_back({&entries_[file].url, entries_[file].size, true});
        DigestPipeline pipeline(std::move(jobs), claimOrder(files, identities_), threads_,
                                platform_);

        std::size_t position = 0;
        for (const SizeGroupPlan& plan : plans) {
            notes_.insert(notes_.end(), plan.notes.begin(), plan.notes.end());
            for (const auto& group : plan.sampleGroups) {
                std::unordered_map<std::string, std::size_t> firstWithDigest;
                for (std::size_t member : group) {
                    Entry& entry = entries_[member];
                    if (progress_)
                        progress_("Comparing content • " + nameOf(entry));
                    const auto& full = pipeline.wait(position++);
                    if (!full) {
                        notes_.push_back("Could not compare " + nameOf(entry));
                        continue;
                    }
                    auto [found, inserted] = firstWithDigest.emplace(*full, member);
                    if (inserted)
                        continue;
                    // The same file reached under a second path is not a copy of itself.
                    if (sameFile(found->second, member))
                        continue;
                    entry.duplicateOf = entries_[found->second].url;
                }
            }
        }
    }

    bool sameFile(std::size_t a, std::size_t b) const {
        return !identities_.empty() && identities_[a] == identities_[b];
    }

    std::vector<Entry>& entries_;
    const std::vector<FileIdentity>& identities_;
    std::vector<std::string>& notes_;
    const Progress& progress_;
    platform::Platform& platform_;
    unsigned threads_;
};

}  // namespace

void markDuplicates(std::vector<Entry>& entries, const std::vector<FileIdentity>& identities,
                    std::vector<std::string>& notes, const Progress& progress,
                    platform::Platform& platform, unsigned threads) {
    Comparison(entries, identities, notes, progress, platform,
               threads == 0 ? digestThreads() : threads)
        .run();
}

}  // namespace quorrin::Engine
