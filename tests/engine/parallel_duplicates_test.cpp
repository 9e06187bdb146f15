// The duplicate analysis on several threads gives exactly what reading one file at a time gives:
// the same marks, retained copies, notes in the same order, progress texts, and entry order.
#include "engine/digest.h"
#include "engine/duplicates.h"
#include "engine/paths.h"
#include "engine/scanner.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <thread>

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorrin::Engine {
namespace {

using quorrin::testing::FaultPlatform;
using quorrin::testing::TempHome;

// What one run of the analysis produced.
struct Outcome {
    std::vector<std::string> urls;
    std::vector<std::optional<std::string>> duplicateOf;
    std::vector<std::string> notes;
    std::vector<std::string> progress;
};

Outcome outcomeOf(const std::vector<Entry>& entries, std::vector<std::string> notes,
                  std::vector<std::string> progress) {
    Outcome outcome{.notes = std::move(notes), .progress = std::move(progress)};
    for (const Entry& entry : entries) {
        outcome.urls.push_back(entry.url);
        outcome.duplicateOf.push_back(entry.duplicateOf);
    }
    return outcome;
}

// The analysis read straight from its description, one file at a time: size groups in the order
// of their first members, members sampled in list order, sample groups in digest order, each
// sorted by path and read whole in that order.
Outcome reference(std::vector<Entry> entries, const std::vector<FileIdentity>& identities,
                  platform::Platform& platform) {
    std::vector<std::string> notes, progress;
    std::vector<std::int64_t> sizeOrder;
    std::map<std::int64_t, std::vector<std::size_t>> bySize;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].size < 1)
            continue;
        if (!bySize.contains(entries[i].size))
            sizeOrder.push_back(entries[i].size);
        bySize[entries[i].size].push_back(i);
    }
    for (std::int64_t size : sizeOrder) {
        const auto& members = bySize[size];
        if (members.size() < 2)
            continue;
        std::map<std::string, std::vector<std::size_t>> bySample;
        std::map<std::size_t, std::string> sampleOf;
        for (std::size_t member : members) {
            auto sample = sampleDigest(entries[member].url, entries[member].size, platform);
            if (!sample) {
                notes.push_back("Could not sample " +
                                std::string(lastComponent(entries[member].url)));
            } else {
                // Grouped by the digests' text, as the analysis' byte order must group them.
                bySample[sample->hex()].push_back(member);
                sampleOf[member] = sample->hex();
            }
        }
        for (auto& [sample, group] : bySample) {
            if (group.size() < 2)
                continue;
            std::sort(group.begin(), group.end(), [&](std::size_t a, std::size_t b) {
                return entries[a].url < entries[b].url;
            });
            std::map<std::string, std::size_t> first;
            for (std::size_t member : group) {
                const std::string name(lastComponent(entries[member].url));
                progress.push_back("Comparing content • " + name);
                // A file read whole by its sample is not read again.
                std::optional<std::string> full;
                if (entries[member].size <= wholeSampleLimit)
                    full = sampleOf[member];
                else if (auto read = digest(entries[member].url, platform))
                    full = read->hex();
                if (!full) {
                    notes.push_back("Could not compare " + name);
                    continue;
                }
                auto [found, inserted] = first.emplace(*full, member);
                if (!inserted && identities[found->second] != identities[member])
                    entries[member].duplicateOf = entries[found->second].url;
            }
        }
    }
    return outcomeOf(entries, std::move(notes), std::move(progress));
}

// Files that cannot be opened at all, and files that open for their sample but not for the full
// read (the second opening fails), so that both kinds of note appear in many groups.
void injectUnreadable(FaultPlatform& platform) {
    auto opens = std::make_shared<std::map<std::string, int>>();
    platform.fault = [opens](const std::string& operation,
                             const std::string& path) -> std::optional<platform::Error> {
        if (operation != "openForReading")
            return std::nullopt;
        const int opened = ++(*opens)[path];
        if (path.find("unreadable") != std::string::npos)
            return platform::Error::fromErrno(EACCES);
        if (path.find("vanishing") != std::string::npos && opened >= 2)
            return platform::Error::fromErrno(EIO);
        return std::nullopt;
    };
}

std::string content(int seed, std::size_t size) {
    std::string text(size, '\0');
    std::uint64_t state = static_cast<std::uint64_t>(seed) * 0x9E3779B97F4A7C15ull + 1;
    for (char& c : text) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        c = static_cast<char>(state & 0xFF);
    }
    return text;
}

// A tree with many groups: copies in sets of two to four under shuffled names, files that agree
// in size and samples but not in the middle, files of 64-128 KiB, empty files, hard links,
// unreadable files and files that vanish before their full read.
std::vector<std::string> buildTree(const TempHome& home) {
    std::vector<std::string> folders = {"Documents/a", "Documents/b/c", "Downloads", "Desktop/x"};
    int made = 0;
    auto place = [&](const std::string& name, const std::string& bytes) {
        const std::string& folder = folders[static_cast<std::size_t>(made++) % folders.size()];
        return home.writeFile(folder + "/" + name, bytes);
    };
    for (int group = 0; group < 40; ++group) {
        const std::size_t size = group % 4 == 0   ? 300'000 + static_cast<std::size_t>(group)
                                 : group % 4 == 1 ? 70'000 + static_cast<std::size_t>(group) * 100
                                 : group % 4 == 2 ? 1'000
                                                  : 131'072;
        const std::string bytes = content(group, size);
        const int copies = 2 + group % 3;
        for (int copy = 0; copy < copies; ++copy) {
            std::string name = "g" + std::to_string(group) + "-" + std::to_string((copy * 7) % 5);
            if (group % 5 == 1 && copy == 1)
                name = "unreadable-" + name;
            if ((group % 6 == 2 || group % 4 == 0) && copy == 0)
                name = "vanishing-" + name;
            place(name + ".bin", bytes);
        }
        // A file of the same size and samples that differs in the middle only.
        std::string middle = bytes;
        middle[size / 2] = static_cast<char>(middle[size / 2] ^ 0x55);
        place("m" + std::to_string(group) + ".bin", middle);
        if (group % 7 == 3) {
            std::string last = bytes;
            last.back() = static_cast<char>(last.back() ^ 0x01);
            place("l" + std::to_string(group) + ".bin", last);
        }
    }
    for (int i = 0; i < 6; ++i)
        place("empty" + std::to_string(i) + ".txt", "");
    // Hard links: one file under several names, beside a real copy.
    const std::string linked = home.writeFile("Documents/a/linked.txt", content(99, 5'000));
    EXPECT_EQ(::link(linked.c_str(), home.path("Downloads/link-1.txt").c_str()), 0);
    EXPECT_EQ(::link(linked.c_str(), home.path("Desktop/x/0-link.txt").c_str()), 0);
    home.writeFile("Desktop/x/copy-of-linked.txt", content(99, 5'000));
    return {home.path("Documents"), home.path("Downloads"), home.path("Desktop")};
}

std::vector<FileIdentity> identitiesOf(const std::vector<Entry>& entries) {
    std::vector<FileIdentity> identities;
    for (const Entry& entry : entries) {
        auto info = platform::system().stat(entry.url, false);
        EXPECT_TRUE(info.ok()) << entry.url;
        identities.push_back(info ? FileIdentity{info->device, info->inode} : FileIdentity{});
    }
    return identities;
}

TEST(ParallelDuplicates, EveryThreadCountGivesTheOneThreadResult) {
    TempHome home;
    const std::vector<std::string> roots = buildTree(home);
    const ScanResult listed =
        scan({.roots = roots, .rootPolicy = [](const std::string&) { return true; }});
    ASSERT_GT(listed.files.size(), 150u);
    const std::vector<FileIdentity> identities = identitiesOf(listed.files);

    FaultPlatform referencePlatform;
    injectUnreadable(referencePlatform);
    const Outcome expected = reference(listed.files, identities, referencePlatform);
    // The tree really exercises every path of the analysis.
    auto notesStartingWith = [&](const std::string& prefix) {
        return std::count_if(expected.notes.begin(), expected.notes.end(),
                             [&](const std::string& note) { return note.starts_with(prefix); });
    };
    EXPECT_GE(notesStartingWith("Could not sample "), 5);
    EXPECT_GE(notesStartingWith("Could not compare "), 5);
    EXPECT_GE(std::count_if(expected.duplicateOf.begin(), expected.duplicateOf.end(),
                            [](const auto& d) { return d.has_value(); }),
              40);

    for (unsigned threads : {1u, 2u, 3u, 8u, 0u}) {
        SCOPED_TRACE("threads " + std::to_string(threads));
        FaultPlatform platform;
        injectUnreadable(platform);
        std::vector<Entry> entries = listed.files;
        std::vector<std::string> notes = {"an earlier note"};
        std::vector<std::string> progress;
        std::mutex progressMutex;
        const std::thread::id caller = std::this_thread::get_id();
        bool calledElsewhere = false;
        markDuplicates(
            entries, identities, notes,
            [&](const std::string& text) {
                std::lock_guard lock(progressMutex);
                calledElsewhere = calledElsewhere || std::this_thread::get_id() != caller;
                progress.push_back(text);
            },
            platform, threads);
        ASSERT_EQ(notes.front(), "an earlier note");  // notes are appended after the scanner's
        notes.erase(notes.begin());
        const Outcome actual = outcomeOf(entries, notes, progress);
        EXPECT_EQ(actual.urls, expected.urls);
        EXPECT_EQ(actual.duplicateOf, expected.duplicateOf);
        EXPECT_EQ(actual.notes, expected.notes);
        EXPECT_EQ(actual.progress, expected.progress);
        EXPECT_FALSE(calledElsewhere) << "progress must be called on the calling thread";
    }
}

TEST(ParallelDuplicates, TheScanReadsDuringTheWalkAndStillGivesTheOneThreadResult) {
    TempHome home;
    const std::vector<std::string> roots = buildTree(home);
    const auto anyRoot = [](const std::string&) { return true; };
    const ScanResult listed = scan({.roots = roots, .rootPolicy = anyRoot});
    FaultPlatform referencePlatform;
    injectUnreadable(referencePlatform);
    const Outcome expected = reference(listed.files, identitiesOf(listed.files), referencePlatform);

    FaultPlatform platform;
    injectUnreadable(platform);
    std::vector<std::string> progress;
    const ScanResult result = scan({.roots = roots,
                                    .compareDuplicates = true,
                                    .progress =
                                        [&](const std::string& text) {
                                            if (text.starts_with("Comparing"))
                                                progress.push_back(text);
                                        },
                                    .rootPolicy = anyRoot},
                                   platform);
    const Outcome actual = outcomeOf(result.files, result.notes, progress);
    EXPECT_EQ(actual.urls, expected.urls);
    EXPECT_EQ(actual.duplicateOf, expected.duplicateOf);
    EXPECT_EQ(actual.notes, expected.notes);
    EXPECT_EQ(actual.progress, expected.progress);
}

TEST(ParallelDuplicates, HardLinkedNamesAreNeverCopiesOfEachOther) {
    TempHome home;
    const std::vector<std::string> roots = buildTree(home);
    ScanResult result =
        scan({.roots = roots, .compareDuplicates = true, .rootPolicy = [](const std::string&) {
                  return true;
              }});
    std::map<std::string, const Entry*> byName;
    for (const Entry& entry : result.files)
        byName[std::string(lastComponent(entry.url))] = &entry;
    // "0-link.txt" sorts first of the linked names and of the copy; the other links are the same
    // file and stay unmarked, the real copy points at it.
    ASSERT_TRUE(byName.contains("0-link.txt"));
    EXPECT_FALSE(byName["0-link.txt"]->duplicateOf.has_value());
    EXPECT_FALSE(byName["linked.txt"]->duplicateOf.has_value());
    EXPECT_FALSE(byName["link-1.txt"]->duplicateOf.has_value());
    EXPECT_EQ(byName["copy-of-linked.txt"]->duplicateOf, byName["0-link.txt"]->url);
}

}  // namespace
}  // namespace quorrin::Engine
