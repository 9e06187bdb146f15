// Synthetic file lists: names from a word list, a few folder levels, dates over eight years.
#include "bench/synthetic_entries.h"

#include "engine/category.h"

#include <array>
#include <chrono>
#include <random>
#include <string>

namespace quorrin::bench {
namespace {

constexpr std::array<const char*, 32> words = {
    "report",  "invoice", "budget", "summary",    "notes",  "draft",  "final",     "scan",
    "receipt", "letter",  "plan",   "photo",      "trip",   "family", "Rechnung",  "garden",
    "tax",     "bank",    "recipe", "manual",     "slides", "thesis", "résumé",    "quote",
    "order",   "ticket",  "IMG",    "Screenshot", "backup", "export", "Übersicht", "contract"};
constexpr std::array<const char*, 16> extensions = {"pdf", "docx", "jpg",  "png", "txt", "xlsx",
                                                    "mp4", "zip",  "heic", "mp3", "csv", "",
                                                    "dmg", "psd",  "html", "mov"};
constexpr std::array<const char*, 12> folders = {"Work",   "Personal", "Taxes", "Invoices",
                                                 "School", "Photos",   "2019",  "2020",
                                                 "2021",   "Client A", "old",   "Scans"};
constexpr std::array<const char*, 3> roots = {"/home/user/Documents", "/home/user/Downloads",
                                              "/home/user/Desktop"};

}  // namespace

std::vector<Engine::Entry> syntheticEntries(std::size_t count) {
    std::mt19937_64 random(20'260'101);
    auto pick = [&](std::size_t size) { return static_cast<std::size_t>(random() % size); };
    std::vector<Engine::SharedPath> rootPaths(roots.begin(), roots.end());
    const auto base = std::chrono::sys_seconds(std::chrono::seconds(1'483'228'800));
    std::vector<Engine::Entry> entries;
    entries.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        std::size_t root = pick(roots.size());
        std::string path = roots[root];
        for (std::size_t depth = pick(4); depth > 0; --depth)
            path += std::string("/") + folders[pick(folders.size())];
        path += std::string("/") + words[pick(words.size())] + " " + std::to_string(pick(3000));
        if (const char* extension = extensions[pick(extensions.size())]; *extension)
            path += std::string(".") + extension;
        auto modified = base + std::chrono::seconds(random() % (8ull * 365 * 86400));
        Engine::Entry entry{.url = path,
                            .size = static_cast<std::int64_t>(random() % 10'000'000),
                            .modified = modified,
                            .lastUsed = modified,
                            .category = Engine::category(path),
                            .root = rootPaths[root]};
        if (i % 5 != 0)
            entry.created = modified - std::chrono::hours(random() % 10'000);
        entries.push_back(std::move(entry));
    }
    return entries;
}

}  // namespace quorrin::bench
