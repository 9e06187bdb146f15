// Fuzz target: the free-name makers, Engine::unique and the trash entry names.
//
// The input names an item and the names already taken in its folder (some of which cannot even
// be looked up). unique() must answer the item's own path when it is free, else a "stem (n).ext"
// variant in the same folder that is not taken, after looking at no more names than are taken:
// a search that cannot end is a hang. trashEntryName() must fit a file name with its .trashinfo
// suffix, keep its ".n" suffix, never cut a UTF-8 character of a valid name, and differ for
// every attempt.
#include "engine/file_actions.h"
#include "engine/move_record.h"
#include "engine/paths.h"
#include "platform/linux_platform.h"
#include "platform/trash/trash_name.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace quorrin;

constexpr const char* folder = "/fuzz/folder";

// A file system of one folder holding exactly the taken names; "?"-prefixed names cannot be
// looked up at all (as in a folder without search permission).
class OneFolder : public platform::LinuxPlatform {
public:
    std::set<std::string> taken;
    std::set<std::string> unreadable;
    std::size_t lookups = 0;

    platform::Result<platform::FileInfo> stat(const std::string& path, bool) override {
        ++lookups;
        const std::string name(Engine::lastComponent(path));
        if (unreadable.contains(name))
            return platform::Error::fromErrno(EACCES);
        if (name.size() > 255)
            return platform::Error::fromErrno(ENAMETOOLONG);
        if (taken.contains(name))
            return platform::FileInfo{.type = platform::FileType::regular};
        return platform::Error::fromErrno(ENOENT);
    }
};

// Splits the input at "/" (which no name holds): the item's name, then the taken names.
std::vector<std::string> namesIn(std::string_view input) {
    std::vector<std::string> names;
    std::size_t start = 0;
    for (;;) {
        std::size_t slash = input.find('/', start);
        names.emplace_back(
            input.substr(start, slash == std::string_view::npos ? slash : slash - start));
        if (slash == std::string_view::npos || names.size() > 300)
            return names;
        start = slash + 1;
    }
}

void checkUnique(const std::vector<std::string>& names) {
    const std::string& name = names.front();
    if (name.empty() || name == "." || name == ".." || name.find('\0') != std::string::npos)
        return;
    OneFolder platform;
    for (std::size_t i = 1; i < names.size(); ++i) {
        if (!names[i].empty() && names[i].front() == '?')
            platform.unreadable.insert(names[i].substr(1));
        else if (names[i].size() <= 255)  // no longer name can exist
            platform.taken.insert(names[i]);
    }
    // Taken, as far as a lookup can tell.
    const auto seenTaken = [&](const std::string& candidate) {
        return platform.taken.contains(candidate) && !platform.unreadable.contains(candidate);
    };
    const std::string path = Engine::appendComponent(folder, name);
    const std::string result = Engine::unique(path, platform);
    if (platform.lookups > platform.taken.size() + 1)
        std::abort();  // looked at a name more than once, or past every taken one
    if (Engine::parentOf(result) != folder)
        std::abort();
    const std::string chosen(Engine::lastComponent(result));
    if (seenTaken(chosen))
        std::abort();
    if (result == path)
        return;
    if (!seenTaken(name))
        std::abort();  // a free name was not taken as it is
    // "stem (n).ext" with n ≥ 2, built from the original name.
    const std::string stem(Engine::stemOf(path));
    const std::string extension(Engine::pathExtension(path));
    const std::string tail = extension.empty() ? ")" : ")." + extension;
    if (!chosen.starts_with(stem + " (") || !chosen.ends_with(tail))
        std::abort();
    const std::string number =
        chosen.substr(stem.size() + 2, chosen.size() - stem.size() - 2 - tail.size());
    if (number.empty() || number.front() == '0' || number == "1" ||
        number.find_first_not_of("0123456789") != std::string::npos)
        std::abort();
}

void checkTrashNames(const std::string& name, std::uint64_t attempts) {
    if (name.empty())
        return;
    std::set<std::string> seen;
    for (std::uint64_t attempt = 1; attempt <= attempts; ++attempt) {
        const std::string entry = platform::trashEntryName(name, attempt);
        if (entry.size() > platform::maxTrashEntryBytes || entry.empty())
            std::abort();
        if (attempt > 1 && !entry.ends_with("." + std::to_string(attempt)))
            std::abort();
        if (Engine::validUtf8(name) && !Engine::validUtf8(entry))
            std::abort();
        if (name.size() + 1 + std::to_string(attempt).size() <= platform::maxTrashEntryBytes &&
            !entry.starts_with(name))
            std::abort();  // a name that fits is never shortened
        if (!seen.insert(entry).second && name.size() < 200)
            std::abort();  // short names never repeat across attempts
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::vector<std::string> names = namesIn(input);
    checkUnique(names);
    checkTrashNames(names.front(), 1 + size % 12);
    return 0;
}
