#include "store/file_list.h"

#include "engine/paths.h"
#include "engine/tables.h"

#include <algorithm>
#include <memory>
#include <mutex>

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace quorrin::store {
namespace {

using Engine::Entry;

// Case-folded text of a path for the search; bytes that are not UTF-8 become U+FFFD.
icu::UnicodeString folded(const std::string& text) {
    icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(text);
    unicode.foldCase();
    return unicode;
}

// The file manager's order: the user's locale, numbers compared by their value.
class NameOrder {
public:
    NameOrder() {
        UErrorCode status = U_ZERO_ERROR;
        collator_.reset(icu::Collator::createInstance(icu::Locale::getDefault(), status));
        if (U_FAILURE(status) || !collator_) {
            status = U_ZERO_ERROR;
            collator_.reset(icu::Collator::createInstance(icu::Locale::getRoot(), status));
        }
        if (collator_)
            collator_->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    }

    // Sort keys compare with memcmp, so each name is analysed once rather than per comparison.
    std::string key(std::string_view name) const {
        icu::UnicodeString unicode =
            icu::UnicodeString::fromUTF8(icu::StringPiece(name.data(), name.size()));
        std::string key;
        if (!collator_)
            return std::string(name);
        int32_t length = collator_->getSortKey(unicode, nullptr, 0);
        key.resize(static_cast<std::size_t>(length));
        collator_->getSortKey(unicode, reinterpret_cast<uint8_t*>(key.data()), length);
        return key;
    }

private:
    std::unique_ptr<icu::Collator> collator_;
};

const NameOrder& nameOrder() {
    static const NameOrder order;
    return order;
}

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

std::vector<Entry> baseList(const ListSource& source, const ListView& view, platform::Instant now,
                            const Engine::Calendar& calendar) {
    std::vector<Entry> base;
    switch (view.page) {
        case Page::findOlder: {
            Engine::OlderMatcher matcher = view.olderQuery.prepare(now, calendar);
            for (const Entry& entry : source.olderFiles)
                if (matcher.matches(entry))
                    base.push_back(entry);
            break;
        }
        case Page::duplicates:
            for (const Entry& entry : source.files)
                if (entry.duplicateOf)
                    base.push_back(entry);
            break;
        case Page::downloadsReview:
            base = staleEntries(source, now);
            break;
        case Page::fileHealth:
            for (const Entry& entry : source.files)
                if (entry.issue)
                    base.push_back(entry);
            break;
        case Page::keptFiles:
            for (const Entry& entry : source.files)
                if (source.kept.contains(entry.id()))
                    base.push_back(entry);
            break;
        default:
            base = source.files;
            break;
    }
    return base;
}

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
    const auto threshold = now - std::chrono::seconds(source.weeks * 7 * 86400);
    std::vector<Entry> stale;
    for (const Entry& entry : source.files) {
        if (Engine::lastComponent(entry.root.str()) != "Downloads")
            continue;
        if (!(entry.lastUsed < threshold))
            continue;
        if (source.kept.contains(entry.id()))
            continue;
        stale.push_back(entry);
    }
    return stale;
}

std::vector<Entry> visible(const ListSource& source, const ListView& view, platform::Instant now,
                           const Engine::Calendar& calendar) {
    std::vector<Entry> base = baseList(source, view, now, calendar);
    const icu::UnicodeString query = folded(view.query);
    std::vector<std::pair<std::string, Entry>> keyed;
    keyed.reserve(base.size());
    for (Entry& entry : base) {
        if (!passesSignal(entry, view))
            continue;
        if (!view.query.empty() && folded(entry.url).indexOf(query) < 0)
            continue;
        if (view.filter != allTypes && entry.category != view.filter)
            continue;
        keyed.emplace_back(nameOrder().key(Engine::lastComponent(entry.url)), std::move(entry));
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<Entry> result;
    result.reserve(keyed.size());
    for (auto& [key, entry] : keyed)
        result.push_back(std::move(entry));
    return result;
}

}  // namespace quorrin::store
