// Walks the connected folders into entries and notes, classifying each file as it goes.
#include "engine/scanner.h"

#include "engine/category.h"
#include "engine/download_in_progress.h"
#include "engine/duplicates.h"
#include "engine/folder_rules.h"
#include "engine/health.h"
#include "engine/paths.h"
#include "engine/read_ahead.h"
#include "engine/tables.h"

#include <deque>
#include <unordered_set>

namespace quorrin::Engine {
namespace {

using platform::FileInfo;
using platform::FileType;

constexpr std::size_t progressInterval = 250;

// One folder on the walk's stack, with the position of the next child to visit.
struct Frame {
    FolderRead folder;
    std::string path;
    std::size_t next = 0;
};

class Walk {
    // An entry's identity (empty for a download in progress) and, once looked up, its place in
    // known_.
    struct CacheSlot {
        static constexpr std::size_t none = static_cast<std::size_t>(-1);
        CacheKey key;
        std::size_t known = none;
    };
    // An entry looked up in the cache, with the results kept for it (empty when none);
    // `changed` once this scan has computed something the cache should keep.
    struct Known {
        std::size_t position = 0;
        CachedResults results;
        bool changed = false;
    };

public:
    Walk(const ScanRequest& request, platform::Platform& platform)
        : request_(request),
          platform_(platform),
          readAhead_(request.readAheadThreads.value_or(readAheadThreads()),
                     !request.includeProjects, platform) {
        if (request.readUsageDates)
            usage_ = platform.readUsageDates();
        if (request.compareDuplicates) {
            DuplicateAnalysis::Lookup lookup;
            DuplicateAnalysis::LookupReady lookupReady;
            if (request.cache) {
                lookup = [this](std::size_t position) { return &knownAt(position).results; };
                lookupReady = [cache = request.cache] { return cache->ready(); };
            }
            duplicates_.emplace(platform, 0, request.stop, std::move(lookup),
                                std::move(lookupReady));
        }
    }

    ScanResult run() {
        for (const std::string& root : request_.roots)
            scanRoot(root);
        if (request_.inspect && !request_.stop.requested())
            inspectFiles();
        if (duplicates_ && !request_.stop.requested())
            duplicates_->finish(result_.files, result_.notes, request_.progress, request_.amount);
        result_.stopped = request_.stop.requested();
        // Rows computed before a stop are kept too: the next run starts from them.
        if (request_.cache)
            rememberResults();
        return std::move(result_);
    }

private:
    // What earlier jobs computed for entries[position], looked up the first time it is needed;
    // empty when the cache has nothing or the file is a download in progress.
    Known& knownAt(std::size_t position) {
        CacheSlot& slot = slots_[position];
        if (slot.known == CacheSlot::none) {
            slot.known = known_.size();
            Known& known = known_.emplace_back(Known{.position = position});
            if (slot.key != CacheKey{}) {
                if (auto kept = request_.cache->find(slot.key))
                    known.results = std::move(*kept);
            }
        }
        return known_[slot.known];
    }

    // Keeps what this scan computed in the cache: the digests the duplicate analysis read and
    // the findings the health check made, in the order the files were looked up (walk order).
    void rememberResults() {
        for (Known& known : known_) {
            const CacheKey& key = slots_[known.position].key;
            if (key == CacheKey{})
                continue;
            if (duplicates_) {
                if (const ContentDigest* sample = duplicates_->sampleDigestRead(known.position)) {
                    known.results.sampleDigest = *sample;
                    known.changed = true;
                }
                if (const ContentDigest* full = duplicates_->fullDigestRead(known.position)) {
                    known.results.fullDigest = *full;
                    known.changed = true;
                }
            }
            if (known.changed)
                request_.cache->remember(key, known.results);
        }
        request_.cache->commit();
    }

    void say(const std::string& text) {
        if (request_.progress)
            request_.progress(text);
    }

    void scanRoot(const std::string& root) {
        if (request_.stop.requested())
            return;
        say("Reading " + std::string(lastComponent(root)) + "…");
        bool allowed =
            request_.rootPolicy ? request_.rootPolicy(root) : allowedRoot(root, platform_);
        if (!allowed) {
            result_.notes.push_back("Protected folder skipped: " + root);
            return;
        }
        FolderRead folder = readRoot(root, platform_);
        if (folder.openError) {
            result_.notes.push_back("Cannot access " + root);
            return;
        }
        rootOverlaps_ = overlapsAnotherRoot(root);
        SharedPath rootPath(root);
        if (folder.listError) {
            result_.notes.push_back("Cannot read " + std::string(lastComponent(root)) + ": " +
                                    folder.listError->description);
            return;
        }
        readAhead_.queueSubfolders(folder);
        std::vector<Frame> stack;
        stack.push_back(Frame{.folder = std::move(folder), .path = root});

        while (!stack.empty() && !request_.stop.requested()) {
            Frame& frame = stack.back();
            if (frame.next == frame.folder.names.size()) {
                stack.pop_back();
                continue;
            }
            if (auto child = visit(frame, frame.next++, rootPath))
                stack.push_back(std::move(*child));
        }
    }

    bool overlapsAnotherRoot(const std::string& root) const {
        const std::string self = standardise(root) + "/";
        int sameRoot = 0;
        for (const std::string& other : request_.roots) {
            const std::string them = standardise(other) + "/";
            if (them == self && ++sameRoot < 2)
                continue;
            if (them.starts_with(self) || self.starts_with(them))
                return true;
        }
        return false;
    }

    // Visits one child; returns the frame to descend into when it is a folder to enter.
    std::optional<Frame> visit(const Frame& parent, std::size_t child, const SharedPath& root) {
        const FolderRead& folder = parent.folder;
        const std::string& name = folder.names[child];
        std::optional<FileType> type = childType(folder, child);
        if (!type) {
            result_.notes.push_back("Could not inspect " + name + ": " +
                                    folder.infos[child]->error().description);
            return std::nullopt;
        }
        if (*type == FileType::symlink)
            return std::nullopt;  // never listed nor followed
        if (*type == FileType::directory)
            return enter(parent, child);
        if (*type != FileType::regular)
            return std::nullopt;  // devices, sockets, FIFOs
        addFile(appendComponent(parent.path, name), **folder.infos[child], root,
                downloadInProgress(name, folder.names));
        return std::nullopt;
    }

    // Packages, protected folders and (unless asked) projects are not entered.
    std::optional<Frame> enter(const Frame& parent, std::size_t child) {
        const std::shared_ptr<ReadJob>& job = parent.folder.subfolders[child];
        if (!job)
            return std::nullopt;
        const std::string& name = parent.folder.names[child];
        FolderRead folder = readAhead_.take(*job);
        const auto& error = folder.openError ? folder.openError : folder.listError;
        if (error) {
            result_.notes.push_back("Cannot read " + name + ": " + error->description);
            return std::nullopt;
        }
        if (folder.project)
            return std::nullopt;
        return Frame{.folder = std::move(folder), .path = appendComponent(parent.path, name)};
    }

    void addFile(std::string path, const FileInfo& info, const SharedPath& root, bool downloading) {
        // Overlapping roots: the first root that reaches a file owns it.
        if (rootOverlaps_ && !taken_.insert(path).second)
            return;
        std::string_view fileCategory = category(path);
        Entry entry{.url = std::move(path),
                    .size = info.size,
                    .modified = info.modified,
                    .lastUsed = info.modified,
                    .created = info.created,
                    .category = fileCategory,
                    .root = root,
                    .downloading = downloading};
        if (request_.readUsageDates) {
            if (auto used = usage_.find(entry.url); used != usage_.end())
                entry.lastUsed = used->second;
        }
        // The identity earlier jobs' results are kept under; downloads in progress are still
        // changing and have none.
        if (request_.cache)
            slots_.push_back({.key = downloading ? CacheKey{} : cacheKeyOf(info)});
        result_.files.push_back(std::move(entry));
        // Files of a size already seen are read and hashed while the walk goes on.
        if (duplicates_)
            duplicates_->add(result_.files, result_.files.size() - 1,
                             FileIdentity{info.device, info.inode});
        if (request_.progress && result_.files.size() % progressInterval == 0)
            say("Indexed " + std::to_string(result_.files.size()) + " files…");
    }

    // The health check, once the walk is over so that the files to check are known: the amount
    // is files checked out of files to check. A download in progress is unfinished by nature (an
    // empty placeholder is not an empty file) and is not checked.
    void inspectFiles() {
        std::int64_t toCheck = 0;
        for (const Entry& entry : result_.files)
            toCheck += !entry.downloading;
        std::int64_t checked = 0, lastPermille = -1;
        for (std::size_t i = 0; i < result_.files.size(); ++i) {
            Entry& entry = result_.files[i];
            // A download in progress is unfinished by nature: an empty placeholder is not an
            // empty file.
            if (entry.downloading)
                continue;
            if (request_.stop.requested())
                return;  // the result is dropped: a stopped scan publishes nothing
            inspect(entry, i);
            const std::int64_t permille = ++checked * 1000 / toCheck;
            if (request_.amount && permille != lastPermille) {
                lastPermille = permille;
                request_.amount(checked, toCheck);
            }
        }
    }

    // The file's finding: from an earlier job when the same decoders judged this very file, else
    // computed now and kept in the cache.
    void inspect(Entry& entry, std::size_t position) {
        Known* known = request_.cache ? &knownAt(position) : nullptr;
        // Asked once per job, and only when there is a cache to compare with.
        if (known && !checkVersion_)
            checkVersion_ = healthCheckVersion(platform_);
        if (known && known->results.healthChecked && checkVersion_->known &&
            known->results.decoderVersion == checkVersion_->text) {
            entry.issue = known->results.healthFinding;
            return;
        }
        entry.issue =
            healthIssue(entry.url, lowercase(pathExtension(entry.url)), entry.size, platform_);
        if (!known)
            return;
        known->results.healthChecked = true;
        known->results.healthFinding = entry.issue;
        known->results.decoderVersion = checkVersion_->text;
        known->changed = true;
    }

    const ScanRequest& request_;
    platform::Platform& platform_;
    // Whether the current root lies inside another root or holds one; only then can a path be
    // reached twice, so only then are paths remembered.
    bool rootOverlaps_ = false;
    platform::UsageDates usage_;
    ScanResult result_;
    std::optional<DuplicateAnalysis> duplicates_;
    // With a cache: per entry, its identity and, once looked up, its place in known_.
    std::vector<CacheSlot> slots_;
    // The entries looked up so far, with the results kept for them; a deque, so that the
    // duplicate analysis may hold on to the results.
    std::deque<Known> known_;
    // The version the health findings of this job are kept under, once asked.
    std::optional<HealthCheckVersion> checkVersion_;
    std::unordered_set<std::string> taken_;
    ReadAhead readAhead_;
};

}  // namespace

ScanResult scan(const ScanRequest& request, platform::Platform& platform) {
    return Walk(request, platform).run();
}

}  // namespace quorrin::Engine
