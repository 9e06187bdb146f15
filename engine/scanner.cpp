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

// One open directory on the walk's stack, with the children still to visit.
struct Frame {
    platform::Fd directory;
    std::string path;
    std::vector<std::string> names;
    std::size_t next = 0;
};

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
        if (auto names = readNames(*directory, lastComponent(root)))
            stack.push_back(Frame{std::move(*directory), root, std::move(*names)});

        while (!stack.empty()) {
            Frame& frame = stack.back();
            if (frame.next == frame.names.size()) {
                stack.pop_back();
                continue;
            }
            const std::string& name = frame.names[frame.next++];
            if (auto child = visit(frame, name, rootPath))
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

    // The non-hidden names of a directory in byte-wise order, or absent after a note.
    std::optional<std::vector<std::string>> readNames(const platform::Fd& directory,
                                                      std::string_view name) {
        auto names = platform_.readDirectory(directory);
        if (!names) {
            result_.notes.push_back("Cannot read " + std::string(name) + ": " +
                                    names.error().description);
            return std::nullopt;
        }
        std::erase_if(*names, [](const std::string& n) { return n.front() == '.'; });
        std::sort(names->begin(), names->end());
        return std::move(*names);
    }

    // Visits one child; returns the frame to descend into when it is a folder to enter.
    std::optional<Frame> visit(const Frame& parent, const std::string& name,
                               const SharedPath& root) {
        auto info = platform_.statAt(parent.directory, name, false);
        if (!info) {
            result_.notes.push_back("Could not inspect " + name + ": " + info.error().description);
            return std::nullopt;
        }
        std::string path = appendComponent(parent.path, name);
        if (info->type == FileType::symlink)
            return std::nullopt;  // never listed nor followed
        if (info->type == FileType::directory)
            return enter(parent, name, std::move(path));
        if (info->type != FileType::regular)
            return std::nullopt;  // devices, sockets, FIFOs
        addFile(std::move(path), *info, root);
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
        auto names = platform_.readDirectory(*directory);
        if (!names) {
            result_.notes.push_back("Cannot read " + name + ": " + names.error().description);
            return std::nullopt;
        }
        if (!request_.includeProjects && projectAt(*directory, name, *names, platform_))
            return std::nullopt;
        std::erase_if(*names, [](const std::string& n) { return n.front() == '.'; });
        std::sort(names->begin(), names->end());
        return Frame{std::move(*directory), std::move(path), std::move(*names)};
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
