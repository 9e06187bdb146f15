// The identity a ResultsCache keeps a file's results under.
#include "engine/results_cache.h"

namespace quorrin::Engine {

CacheKey cacheKeyOf(const platform::FileInfo& info) {
    return {.device = info.device,
            .inode = info.inode,
            .size = info.size,
            .modifiedNs = info.modified.time_since_epoch().count(),
            .changedNs = info.changed.time_since_epoch().count()};
}

}  // namespace quorrin::Engine
