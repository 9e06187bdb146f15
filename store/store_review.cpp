// The weekly Downloads review: stale files, whether a review is due, marking it done.
#include "store/file_list.h"
#include "store/store.h"

namespace quorrin::store {

std::vector<Entry> Store::stale() const {
    return stale(platform_.now());
}

std::vector<Entry> Store::stale(platform::Instant now) const {
    return staleEntries(ListSource{*files_, olderFiles_, kept_, weeks_}, now);
}

bool Store::reviewDue() const {
    return reviewDue(platform_.now());
}

bool Store::reviewDue(platform::Instant now) const {
    std::optional<platform::Instant> last = settings_.read().lastReview;
    if (!last)
        return true;
    return now - *last > std::chrono::seconds(604800);
}

void Store::markReviewDone() {
    const platform::Status written = settings_.writeLastReview(platform_.now());
    log("Weekly Downloads review completed");
    reportSettingsWrite(written);
}

}  // namespace quorrin::store
