#include "engine/duplicates.h"

#include "engine/digest.h"
#include "engine/paths.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace quorrin::Engine {
namespace {

struct Comparison {
    std::vector<Entry>& entries;
    const std::vector<FileIdentity>& identities;
    std::vector<std::string>& notes;
    const Progress& progress;
    platform::Platform& platform;

    bool sameFile(std::size_t a, std::size_t b) const {
        return !identities.empty() && identities[a] == identities[b];
    }

    // Full digests of one sample group, walked in path order; the first path with a digest is
    // the retained copy and every later one points at it.
    void compareGroup(std::vector<std::size_t>& members) {
        std::sort(members.begin(), members.end(),
                  [&](std::size_t a, std::size_t b) { return entries[a].url < entries[b].url; });
        std::unordered_map<std::string, std::size_t> firstWithDigest;
        for (std::size_t member : members) {
            Entry& entry = entries[member];
            if (progress)
                progress("Comparing content • " + std::string(lastComponent(entry.url)));
            auto full = digest(entry.url, platform);
            if (!full) {
                notes.push_back("Could not compare " + std::string(lastComponent(entry.url)));
                continue;
            }
            auto [found, inserted] = firstWithDigest.emplace(*full, member);
            if (inserted)
                continue;
            // The same file reached under a second path is not a copy of itself.
            if (sameFile(found->second, member))
                continue;
            entry.duplicateOf = entries[found->second].url;
        }
    }

    void compareSizeGroup(const std::vector<std::size_t>& members) {
        // An ordered map keeps the visiting order of sample groups deterministic.
        std::map<std::string, std::vector<std::size_t>> bySample;
        for (std::size_t member : members) {
            const Entry& entry = entries[member];
            auto sample = sampleDigest(entry.url, entry.size, platform);
            if (!sample) {
                notes.push_back("Could not sample " + std::string(lastComponent(entry.url)));
                continue;
            }
            bySample[*sample].push_back(member);
        }
        for (auto& [sample, group] : bySample)
            if (group.size() >= 2)
                compareGroup(group);
    }
};

}  // namespace

void markDuplicates(std::vector<Entry>& entries, const std::vector<FileIdentity>& identities,
                    std::vector<std::string>& notes, const Progress& progress,
                    platform::Platform& platform) {
    // Size groups in order of their first member, so notes arrive in a repeatable order.
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
    Comparison comparison{entries, identities, notes, progress, platform};
    for (const auto& group : groups)
        if (group.size() >= 2)
            comparison.compareSizeGroup(group);
}

}  // namespace quorrin::Engine
