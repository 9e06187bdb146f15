#include "engine/scanner.h"

#include "engine/category.h"
#include "engine/duplicates.h"
#include "engine/folder_rules.h"
#include "engine/health.h"
#include "engine/paths.h"
#include "engine/tables.h"

#include <algorithm>
#include <unordered_set>

namespace quorrin::Engine {
namespace {

using platform::FileInfo;
using platform::FileType;

constexpr std::size_t progressInterval = 250;

// One open directory on the walk's stack: its children in byte-wise name order (hidden ones left
// out), the type the directory records for each, and the status of each child that needs one.
struct Frame {
    platform::Fd directory;
    std::string path;
    std::vector<std::string> names;
    std::vector<std::optional<FileType>> types;
    std::vector<std::optional<platform::Result<FileInfo>>> infos;
    std::size_t next = 0;
};

// Whether a child needs a status query: a regular file for its size and dates, and anything whose
// type the directory does not record. Folders are opened without following links and links are
// skipped, so neither needs one.
bool needsStatus(const std::optional<FileType>& type) {
    return !type || *type == FileType::regular;
}

class Walk {
public:
    Walk(const ScanRequest& request, platform::Platform& platform)
        : request_(request), platform_(platform) {
        if (request.readUsageDates)
            usage_ = platform.readUsageDates();
        if (request.compareDuplicates)
            duplicates_.emplace(platform);
    }

    ScanResult run() {
        for (const std::string& root : request_.roots)
            scanRoot(root);
        if (duplicates_)
            duplicates_->finish(result_.files, result_.notes, request_.progress);
        return std::move(result_);
    }

private:
    void say(const std::string& text) {
        if (request_.progress)
            request_.progress(text);
    }

    void scanRoot(const std::string& root) {
        say("Reading " + std::string(lastComponent(root)) + "…");
        bool allowed =
            request_.rootPolicy ? request_.rootPolicy(root) : allowedRoot(root, platform_);
        if (!allowed) {
            result_.notes.push_back("Protected folder skipped: " + root);
            return;
        }
        auto directory = platform_.openDirectory(root);
        if (!directory) {
            result_.notes.push_back("Cannot access " + root);
            return;
        }
        rootOverlaps_ = overlapsAnotherRoot(root);
        SharedPath rootPath(root);
        std::vector<Frame> stack;
        auto entries = platform_.listDirectory(*directory);
        if (!entries) {
            result_.notes.push_back("Cannot read " + std::string(lastComponent(root)) + ": " +
                                    entries.error().description);
        } else {
            stack.push_back(frameOf(std::move(*directory), root, std::move(*entries)));
        }

        while (!stack.empty()) {
            Frame& frame = stack.back();
            if (frame.next == frame.names.size()) {
                stack.pop_back();
                continue;
            }
            if (auto child = visit(frame, frame.next++, rootPath))
                stack.push_back(std::move(*child));
        }
    }

    // The frame of an opened directory: children without hidden names, in byte-wise name order,
    // with the status of those that need one queried in inode order.
    Frame frameOf(platform::Fd directory, std::string path,
                  std::vector<platform::DirectoryEntry> entries) {
        std::erase_if(entries, [](const platform::DirectoryEntry& entry) {
            return entry.name.front() == '.';
        });
        std::sort(entries.begin(), entries.end(),
                  [](const auto& a, const auto& b) { return a.name < b.name; });
        Frame frame{.directory = std::move(directory), .path = std::move(path)};
        frame.names.reserve(entries.size());
        frame.types.reserve(entries.size());
        std::vector<std::pair<std::uint64_t, std::size_t>> toQuery;
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (needsStatus(entries[i].type))
                toQuery.emplace_back(entries[i].inode, i);
            frame.names.push_back(std::move(entries[i].name));
            frame.types.push_back(entries[i].type);
        }
        frame.infos.resize(entries.size());
        std::sort(toQuery.begin(), toQuery.end());
        for (const auto& [inode, i] : toQuery)
            frame.infos[i] = platform_.statAt(frame.directory, frame.names[i], false);
        return frame;
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
    std::optional<Frame> visit(Frame& parent, std::size_t child, const SharedPath& root) {
        const std::string& name = parent.names[child];
        std::optional<FileType> type = parent.types[child];
        if (needsStatus(type)) {
            const auto& info = *parent.infos[child];
            if (!info) {
                result_.notes.push_back("Could not inspect " + name + ": " +
                                        info.error().description);
                return std::nullopt;
            }
            type = info->type;
        }
        if (*type == FileType::symlink)
            return std::nullopt;  // never listed nor followed
        if (*type == FileType::directory)
            return enter(parent, name, appendComponent(parent.path, name));
        if (*type != FileType::regular)
            return std::nullopt;  // devices, sockets, FIFOs
        addFile(appendComponent(parent.path, name), **parent.infos[child], root);
        return std::nullopt;
    }

    std::optional<Frame> enter(const Frame& parent, const std::string& name, std::string path) {
        if (packageExtensions().contains(lowercase(pathExtension(name))))
            return std::nullopt;
        if (protectedNames().contains(name))
            return std::nullopt;
        auto directory = platform_.openDirectoryAt(parent.directory, name);
        if (!directory) {
            result_.notes.push_back("Cannot read " + name + ": " + directory.error().description);
            return std::nullopt;
        }
        auto entries = platform_.listDirectory(*directory);
        if (!entries) {
            result_.notes.push_back("Cannot read " + name + ": " + entries.error().description);
            return std::nullopt;
        }
        if (!request_.includeProjects && projectAt(*directory, name, *entries, platform_))
            return std::nullopt;
        return frameOf(std::move(*directory), std::move(path), std::move(*entries));
    }

    void addFile(std::string path, const FileInfo& info, const SharedPath& root) {
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
                    .root = root};
        if (request_.readUsageDates) {
            if (auto used = usage_.find(entry.url); used != usage_.end())
                entry.lastUsed = used->second;
        }
        if (request_.inspect)
            entry.issue =
                healthIssue(entry.url, lowercase(pathExtension(entry.url)), entry.size, platform_);
        result_.files.push_back(std::move(entry));
        // Files of a size already seen are read and hashed while the walk goes on.
        if (duplicates_)
            duplicates_->add(result_.files, result_.files.size() - 1,
                             FileIdentity{info.device, info.inode});
        if (result_.files.size() % progressInterval == 0)
            say("Indexed " + std::to_string(result_.files.size()) + " files…");
    }

    const ScanRequest& request_;
    platform::Platform& platform_;
    // Whether the current root lies inside another root or holds one; only then can a path be
    // reached twice, so only then are paths remembered.
    bool rootOverlaps_ = false;
    platform::UsageDates usage_;
    ScanResult result_;
    std::optional<DuplicateAnalysis> duplicates_;
    std::unordered_set<std::string> taken_;
};

}  // namespace

ScanResult scan(const ScanRequest& request, platform::Platform& platform) {
    return Walk(request, platform).run();
}

}  // namespace quorrin::Engine
