// Inventory: a snapshot of a tree's files and the check that every one of them is still there.
#include "tests/support/inventory.h"

#include "platform/trash/trash_info.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include <dirent.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrin::testing {
namespace {

// Files up to this size are compared whole; larger ones (sparse giants) by size and both ends.
constexpr off_t wholeContentLimit = 1 << 20;
constexpr off_t endSample = 4096;

std::string join(const std::string& folder, const std::string& name) {
    return folder + "/" + name;
}

std::string parentOf(const std::string& path) {
    std::size_t slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

bool within(const std::string& path, const std::string& folder) {
    return path == folder || path.rfind(folder + "/", 0) == 0;
}

std::string readAt(int file, off_t offset, off_t count) {
    std::string bytes(static_cast<std::size_t>(count), '\0');
    std::size_t got = 0;
    while (got < bytes.size()) {
        ssize_t n =
            ::pread(file, bytes.data() + got, bytes.size() - got, offset + static_cast<off_t>(got));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        got += static_cast<std::size_t>(n);
    }
    bytes.resize(got);
    return bytes;
}

// The content of a regular file, or for a large one its size and both ends.
std::string fingerprint(int folder, const std::string& name) {
    int file = ::openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return "<unreadable: " + std::string(std::strerror(errno)) + ">";
    struct stat status {};
    ::fstat(file, &status);
    std::string print;
    if (status.st_size <= wholeContentLimit) {
        print = readAt(file, 0, status.st_size);
    } else {
        print = "<" + std::to_string(status.st_size) + " bytes>" + readAt(file, 0, endSample) +
                readAt(file, status.st_size - endSample, endSample);
    }
    ::close(file);
    return print;
}

// Calls `visit` with the path and fingerprint of every regular file below the open folder, through
// descriptors so that depth and path length are no limit; links are not followed; folders for
// which `skip` is true are left out.
void walk(int folder, const std::string& path,
          const std::function<void(const std::string&, const std::string&)>& visit,
          const std::function<bool(const std::string&)>& skip) {
    int copy = ::fcntl(folder, F_DUPFD_CLOEXEC, 0);
    DIR* dir = copy < 0 ? nullptr : ::fdopendir(copy);
    if (dir == nullptr) {
        if (copy >= 0)
            ::close(copy);
        throw std::runtime_error("cannot list " + path);
    }
    std::vector<std::string> names;
    while (const dirent* item = ::readdir(dir)) {
        std::string name = item->d_name;
        if (name != "." && name != "..")
            names.push_back(name);
    }
    ::closedir(dir);
    for (const std::string& name : names) {
        std::string child = join(path, name);
        struct stat status {};
        if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
            continue;
        if (S_ISREG(status.st_mode)) {
            visit(child, fingerprint(folder, name));
        } else if (S_ISDIR(status.st_mode) && !skip(child)) {
            int sub =
                ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
            if (sub < 0)
                throw std::runtime_error("cannot open " + child);
            walk(sub, child, visit, skip);
            ::close(sub);
        }
    }
}

std::map<std::string, std::string> filesBelow(const std::string& root,
                                              const std::function<bool(const std::string&)>& skip) {
    std::map<std::string, std::string> files;
    int folder = ::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return files;
    walk(
        folder, root,
        [&](const std::string& path, const std::string& print) { files[path] = print; }, skip);
    ::close(folder);
    return files;
}

// The path a trash record names for the file at `path`: its folder with every link resolved.
std::string recordedPath(const std::string& path) {
    std::string parent = parentOf(path);
    if (char* real = ::realpath(parent.c_str(), nullptr)) {
        parent = real;
        ::free(real);
    }
    return join(parent, nameOf(path));
}

struct TrashItem {
    std::string path;  // in files/
    std::string print;
    std::string origin;  // the decoded Path= of its record; empty without one
};

}  // namespace

Inventory Inventory::take(const std::string& home, std::vector<std::string> connected) {
    Inventory inventory;
    inventory.home_ = home;
    inventory.connected_ = std::move(connected);
    const std::vector<std::string> own = {
        join(home, ".config/QUORRIN"), join(home, ".local/share/QUORRIN"),
        join(home, ".local/share/Trash"), join(home, ".cache/QUORRIN")};
    inventory.files_ = filesBelow(home, [&](const std::string& folder) {
        return std::find(own.begin(), own.end(), folder) != own.end();
    });
    return inventory;
}

void Inventory::add(const std::string& path) {
    files_[path] = fingerprint(AT_FDCWD, path);
}

bool Inventory::connected(const std::string& path) const {
    return std::any_of(connected_.begin(), connected_.end(),
                       [&](const std::string& root) { return within(path, root); });
}

std::vector<HistoryRecord> Inventory::readHistory(const std::string& path,
                                                  std::vector<std::string>& problems) {
    std::vector<HistoryRecord> records;
    if (::access(path.c_str(), F_OK) != 0)
        return records;
    std::string text = fingerprint(AT_FDCWD, path);
    nlohmann::json document = nlohmann::json::parse(text, nullptr, false);
    if (document.is_discarded() || !document.is_array()) {
        problems.push_back("the undo history does not parse: " + text.substr(0, 200));
        return records;
    }
    for (const auto& element : document) {
        if (!element.is_object() || !element.contains("from") || !element.contains("to") ||
            !element["from"].is_string() || !element["to"].is_string()) {
            problems.push_back("the undo history holds a bad record: " + element.dump());
            return {};
        }
        records.emplace_back(element["from"].get<std::string>(), element["to"].get<std::string>());
    }
    return records;
}

namespace {

struct Census {
    std::vector<std::string> problems;
    std::map<std::string, Placement> placements;
};

Census census(const std::string& home, const std::map<std::string, std::string>& originals,
              const std::function<bool(const std::string&)>& connected,
              const std::string& historyPath) {
    Census result;
    std::vector<HistoryRecord> history = Inventory::readHistory(historyPath, result.problems);

    const std::string trashRoot = join(home, ".local/share/Trash");
    const std::vector<std::string> own = {join(home, ".config/QUORRIN"),
                                          join(home, ".local/share/QUORRIN"), trashRoot,
                                          join(home, ".cache/QUORRIN")};
    std::map<std::string, std::string> now = filesBelow(home, [&](const std::string& folder) {
        return std::find(own.begin(), own.end(), folder) != own.end();
    });
    std::vector<TrashItem> trash;
    for (const auto& [path, print] :
         filesBelow(join(trashRoot, "files"), [](const std::string&) { return false; })) {
        TrashItem item{path, print, ""};
        std::string entry = path.substr(trashRoot.size() + 7);  // after "/files/"
        std::string record = join(join(trashRoot, "info"), entry + ".trashinfo");
        if (::access(record.c_str(), F_OK) == 0) {
            if (auto info = platform::parseTrashInfo(fingerprint(AT_FDCWD, record)))
                item.origin = info->path;
            else
                result.problems.push_back("unreadable trash record " + record);
        } else {
            result.problems.push_back("trash entry without a record: " + path);
        }
        trash.push_back(std::move(item));
    }

    std::set<std::string> claimed;
    for (const auto& [original, print] : originals) {
        std::vector<std::string> found;
        Placement placement = Placement::missing;
        auto it = now.find(original);
        if (it != now.end() && it->second == print) {
            found.push_back(original);
            placement = Placement::original;
        }
        if (connected(original)) {
            // Every place the history leads to from the original place, stale records included.
            std::set<std::string> reached{original};
            std::vector<std::string> queue{original};
            while (!queue.empty()) {
                std::string from = queue.back();
                queue.pop_back();
                for (const auto& [recordFrom, recordTo] : history)
                    if (recordFrom == from && reached.insert(recordTo).second)
                        queue.push_back(recordTo);
            }
            for (const std::string& place : reached) {
                if (place == original)
                    continue;
                auto at = now.find(place);
                if (at != now.end() && at->second == print) {
                    found.push_back(place);
                    placement = Placement::moved;
                }
            }
            const std::string origin = recordedPath(original);
            for (const TrashItem& item : trash) {
                if (item.origin == origin && item.print == print) {
                    found.push_back(item.path);
                    placement = Placement::trashed;
                }
            }
        }
        if (found.empty()) {
            result.problems.push_back("lost: " + original);
        } else if (found.size() > 1) {
            std::string places;
            for (const std::string& place : found)
                places += " " + place;
            result.problems.push_back("present more than once: " + original + " at" + places);
        }
        for (const std::string& place : found)
            if (!claimed.insert(place).second)
                result.problems.push_back("claimed by two files: " + place);
        result.placements[original] = found.size() == 1 ? placement : Placement::missing;
    }
    for (const auto& [path, print] : now)
        if (!claimed.contains(path))
            result.problems.push_back("unexpected file: " + path);
    for (const TrashItem& item : trash)
        if (!claimed.contains(item.path))
            result.problems.push_back("unexpected trash entry: " + item.path + " from " +
                                      item.origin);
    return result;
}

}  // namespace

std::vector<std::string> Inventory::check(const std::string& historyPath) const {
    return census(
               home_, files_, [&](const std::string& path) { return connected(path); }, historyPath)
        .problems;
}

std::map<std::string, Placement> Inventory::placements(const std::string& historyPath) const {
    return census(
               home_, files_, [&](const std::string& path) { return connected(path); }, historyPath)
        .placements;
}

std::string describe(const std::vector<std::string>& problems) {
    std::string text;
    for (const std::string& problem : problems)
        text += "\n  " + problem;
    return text;
}

}  // namespace quorrin::testing
