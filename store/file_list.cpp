// Computes what a file page shows: its files filtered by type and signal, searched and sorted.
#include "store/file_list.h"

#include "engine/paths.h"
#include "engine/tables.h"

#include <algorithm>

namespace quorrin::store {
namespace {

using Engine::Entry;

bool passesSignal(const Entry& entry, const ListView& view) {
    if (view.page != Page::fileHealth || view.issueFilter == allSignals)
        return true;
    if (!entry.issue)
        return false;
    const char* needle = "executable";
    for (const SignalOption& option : signalOptions())
        if (view.issueFilter == option.value && option.needle[0] != '\0')
            needle = option.needle;
    return entry.issue->find(needle) != std::string::npos;
}

bool stale(const Entry& entry, const ListSource& source, platform::Instant threshold) {
    return Engine::lastComponent(entry.root.str()) == "Downloads" && entry.lastUsed < threshold &&
           !source.kept.contains(entry.id());
}

platform::Instant staleThreshold(const ListSource& source, platform::Instant now) {
    return now - std::chrono::seconds(source.weeks * 7 * 86400);
}

// Whether an entry belongs to the page's base list: the Store's find-older files that the query
// matches on the FindOlder page, else the Store's files that the page shows.
class PageBase {
public:
    PageBase(const ListSource& source, const ListView& view, platform::Instant now,
             const Engine::Calendar& calendar)
        : source_(source), page_(view.page), threshold_(staleThreshold(source, now)) {
        if (page_ == Page::findOlder)
            matcher_ = view.olderQuery.prepare(now, calendar);
    }

    const std::vector<Entry>& list() const {
        return page_ == Page::findOlder ? source_.olderFiles : source_.files;
    }

    bool holds(const Entry& entry) const {
        switch (page_) {
            case Page::findOlder:
                return matcher_.matches(entry);
            case Page::duplicates:
                return entry.duplicateOf.has_value();
            case Page::downloadsReview:
                return stale(entry, source_, threshold_);
            case Page::fileHealth:
                return entry.issue.has_value();
            case Page::keptFiles:
                return source_.kept.contains(entry.id());
            default:
                return true;
        }
    }

private:
    const ListSource& source_;
    Page page_;
    platform::Instant threshold_;
    Engine::OlderMatcher matcher_;
};

}  // namespace

const std::vector<SignalOption>& signalOptions() {
    static const std::vector<SignalOption> options = {
        {"All signals", allSignals, ""},
        {"Unreadable images / PDFs", "Unreadable", "could not"},
        {"Empty files", "Empty", "Empty"},
        {"Installers / executables", "Executable", "executable"},
    };
    return options;
}

const std::vector<TypeOption>& typeOptions() {
    static const std::vector<TypeOption> options = [] {
        std::vector<TypeOption> all{{allTypes, allTypes}};
        for (const auto& row : Engine::categories())
            all.push_back({std::string(row.name.substr(3)), std::string(row.name)});
        all.push_back({"Other Files", std::string(Engine::otherFilesCategory)});
        all.push_back({"Projects", std::string(Engine::projectsCategory)});
        return all;
    }();
    return options;
}

std::vector<Entry> staleEntries(const ListSource& source, platform::Instant now) {
    const platform::Instant threshold = staleThreshold(source, now);
    std::vector<Entry> result;
    for (const Entry& entry : source.files)
        if (stale(entry, source, threshold))
            result.push_back(entry);
    return result;
}

std::vector<Entry> visible(const ListSource& source, const ListView& view, platform::Instant now,
                           const Engine::Calendar& calendar, ListIndex& index) {
    const PageBase base(source, view, now, calendar);
    const std::vector<Entry>& list = base.list();
    ListIndex::ListKeys& keys = index.keysFor(list);
    std::vector<std::uint8_t> matches;
    if (!view.query.empty())
        matches = keys.matching(view.query);
    const bool anyType = view.filter == allTypes;
    // Walking the whole list in name order and keeping what passes gives the stable name order of
    // what passes; every filter must pass, so the cheap ones go first.
    std::vector<Entry> result;
    for (std::uint32_t position : keys.nameOrder()) {
        const Entry& entry = list[position];
        if (!base.holds(entry) || !passesSignal(entry, view))
            continue;
        if (!anyType && entry.category != view.filter)
            continue;
        if (!matches.empty() && !matches[position])
            continue;
        result.push_back(entry);
    }
    return result;
}

std::vector<Entry> visible(const ListSource& source, const ListView& view, platform::Instant now,
                           const Engine::Calendar& calendar) {
    ListIndex index;
    return visible(source, view, now, calendar, index);
}

}  // namespace quorrin::store
