// ListIndex: the name order and folded paths of a list through ICU, checked against its paths.
#include "store/list_index.h"

#include "engine/paths.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <optional>
#include <thread>

#include <string.h>
#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace quorrin::store {
namespace {

using Engine::Entry;

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
    // A collator is not to be used by two threads at once; a copy for another thread shares the
    // tables and costs little.
    NameOrder(const NameOrder& other)
        : collator_(other.collator_ ? other.collator_->clone() : nullptr) {}
    NameOrder& operator=(const NameOrder&) = delete;

    // Sort keys compare with memcmp, so each name is analysed once rather than per comparison.
    std::string key(std::string_view name) const {
        if (!collator_)
            return std::string(name);
        icu::UnicodeString unicode =
            icu::UnicodeString::fromUTF8(icu::StringPiece(name.data(), name.size()));
        std::string key(static_cast<std::size_t>(std::max(unicode.length(), 16) * 4), '\0');
        int32_t length = collator_->getSortKey(unicode, reinterpret_cast<uint8_t*>(key.data()),
                                               static_cast<int32_t>(key.size()));
        if (static_cast<std::size_t>(length) > key.size()) {
            key.resize(static_cast<std::size_t>(length));
            length = collator_->getSortKey(unicode, reinterpret_cast<uint8_t*>(key.data()), length);
        }
        key.resize(static_cast<std::size_t>(length));
        return key;
    }

private:
    std::unique_ptr<icu::Collator> collator_;
};

const NameOrder& sharedNameOrder() {
    static const NameOrder order;
    return order;
}

constexpr std::size_t maximumParts = 4;

// Runs work(index, begin, end) over contiguous parts of [0, count), part `index` covering
// [begin, end): on the calling thread alone (index 0) for a short list, else on up to
// maximumParts threads, the calling thread taking part 0. The keys of a list of a hundred
// thousand names take a good part of a second on one core.
template <class Work>
void inParts(std::size_t count, Work&& work) {
    constexpr std::size_t minimumPart = 8192;
    const std::size_t threads = std::clamp<std::size_t>(
        std::min<std::size_t>(std::thread::hardware_concurrency(), count / minimumPart), 1,
        maximumParts);
    const std::size_t part = (count + threads - 1) / std::max<std::size_t>(threads, 1);
    std::vector<std::thread> helpers;
    for (std::size_t t = 1; t < threads; ++t)
        helpers.emplace_back([&, t] { work(t, t * part, std::min(count, (t + 1) * part)); });
    work(std::size_t{0}, std::size_t{0}, std::min(count, part));
    for (std::thread& helper : helpers)
        helper.join();
}

std::string_view part(const std::string& buffer, const std::vector<std::size_t>& ends,
                      std::size_t position) {
    const std::size_t start = position == 0 ? 0 : ends[position - 1];
    return std::string_view(buffer).substr(start, ends[position] - start);
}

}  // namespace

std::string ListIndex::fold(std::string_view text) {
    icu::UnicodeString unicode =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), text.size()));
    unicode.foldCase();
    std::string folded;
    unicode.toUTF8String(folded);
    return folded;
}

std::string ListIndex::collationKey(std::string_view name) {
    return sharedNameOrder().key(name);
}

bool ListIndex::holds(const ListKeys& keys, const std::vector<Entry>& list) {
    if (keys.list_ != &list || keys.pathEnds_.size() != list.size())
        return false;
    for (std::size_t i = 0; i < list.size(); ++i)
        if (part(keys.paths_, keys.pathEnds_, i) != list[i].url)
            return false;
    return true;
}

ListIndex::ListKeys& ListIndex::keysFor(const std::vector<Entry>& list) {
    ++uses_;
    ListKeys* keys = nullptr;
    for (ListKeys& candidate : lists_)
        if (candidate.list_ == &list)
            keys = &candidate;
    if (keys == nullptr)
        keys = &*std::min_element(
            lists_.begin(), lists_.end(),
            [](const ListKeys& a, const ListKeys& b) { return a.lastUse_ < b.lastUse_; });
    keys->lastUse_ = uses_;
    if (holds(*keys, list))
        return *keys;

    *keys = ListKeys();
    keys->list_ = &list;
    keys->lastUse_ = uses_;
    std::size_t total = 0;
    for (const Entry& entry : list)
        total += entry.url.size();
    keys->paths_.reserve(total);
    keys->pathEnds_.reserve(list.size());
    for (const Entry& entry : list) {
        keys->paths_ += entry.url;
        keys->pathEnds_.push_back(keys->paths_.size());
    }
    return *keys;
}

const std::vector<std::uint32_t>& ListIndex::ListKeys::nameOrder() {
    if (!hasOrder_) {
        const std::size_t count = pathEnds_.size();
        std::vector<std::string> keys(count);
        inParts(count, [&](std::size_t index, std::size_t begin, std::size_t end) {
            const std::optional<NameOrder> copy =
                index == 0 ? std::nullopt : std::optional<NameOrder>(sharedNameOrder());
            const NameOrder& order = copy ? *copy : sharedNameOrder();
            for (std::size_t i = begin; i < end; ++i)
                keys[i] = order.key(Engine::lastComponent(part(paths_, pathEnds_, i)));
        });
        order_.resize(count);
        std::iota(order_.begin(), order_.end(), std::uint32_t{0});
        std::stable_sort(order_.begin(), order_.end(),
                         [&](std::uint32_t a, std::uint32_t b) { return keys[a] < keys[b]; });
        hasOrder_ = true;
    }
    return order_;
}

std::vector<std::uint8_t> ListIndex::ListKeys::matching(std::string_view query) {
    const std::size_t count = pathEnds_.size();
    if (!hasFolded_) {
        // Each part folds into its own buffer; the buffers are then joined in order.
        std::vector<std::pair<std::string, std::vector<std::size_t>>> parts(maximumParts);
        inParts(count, [&](std::size_t index, std::size_t begin, std::size_t end) {
            auto& [text, ends] = parts[index];
            ends.reserve(end - begin);
            for (std::size_t i = begin; i < end; ++i) {
                text += fold(part(paths_, pathEnds_, i));
                ends.push_back(text.size());
                text.push_back('\0');
            }
        });
        folded_.reserve(paths_.size() + count);
        foldedEnds_.reserve(count);
        for (auto& [text, ends] : parts) {
            const std::size_t offset = folded_.size();
            folded_ += text;
            for (std::size_t end : ends)
                foldedEnds_.push_back(offset + end);
        }
        hasFolded_ = true;
    }
    const std::string folded = fold(query);
    std::vector<std::uint8_t> matches(count, 0);
    if (folded.find('\0') != std::string::npos)
        return matches;  // no path holds a NUL byte
    // One pass over all paths: after a match, the search goes on at the next path.
    const char* const begin = folded_.data();
    const char* const end = begin + folded_.size();
    const char* from = begin;
    std::size_t position = 0;
    while (from < end) {
        const void* found =
            ::memmem(from, static_cast<std::size_t>(end - from), folded.data(), folded.size());
        if (found == nullptr)
            break;
        const std::size_t offset =
            static_cast<std::size_t>(static_cast<const char*>(found) - begin);
        position = static_cast<std::size_t>(
            std::upper_bound(foldedEnds_.begin() + static_cast<std::ptrdiff_t>(position),
                             foldedEnds_.end(), offset) -
            foldedEnds_.begin());
        if (position == count)
            break;
        matches[position] = 1;
        from = begin + foldedEnds_[position] + 1;
        ++position;
    }
    return matches;
}

}  // namespace quorrin::store
