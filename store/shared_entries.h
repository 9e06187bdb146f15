// SharedEntries: the files of the last scan, held by the Store and read by the work it starts.
#pragma once

#include "engine/entry.h"

#include <memory>
#include <vector>

namespace quorrin::store {

// A scan's files, never changed once published: a change publishes a new list. The Store and a
// background Start or preview planning from the same scan share one list instead of each holding
// a copy of tens of thousands of entries.
using SharedEntries = std::shared_ptr<const std::vector<Engine::Entry>>;

// A list holding `files`.
inline SharedEntries shareEntries(std::vector<Engine::Entry> files) {
    return std::make_shared<const std::vector<Engine::Entry>>(std::move(files));
}

}  // namespace quorrin::store
