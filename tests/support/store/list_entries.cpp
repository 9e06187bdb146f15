// Builds in-memory entries and their urls for the file-list tests.
#include "tests/support/store/list_entries.h"

namespace quorrin::testing {

Engine::Entry listEntry(const std::string& path, std::string_view category,
                        const std::string& root) {
    using std::chrono::seconds;
    return Engine::Entry{.url = path,
                         .size = 10,
                         .modified = listNow - seconds(100),
                         .lastUsed = listNow - seconds(100),
                         .category = category,
                         .root = root};
}

std::vector<std::string> urlsOf(const std::vector<Engine::Entry>& entries) {
    std::vector<std::string> result;
    result.reserve(entries.size());
    for (const Engine::Entry& entry : entries)
        result.push_back(entry.url);
    return result;
}

}  // namespace quorrin::testing
