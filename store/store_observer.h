// StoreObserver: how the Store announces that one of its published properties changed.
#pragma once

namespace quorrin::store {

enum class Property {
    roots,
    files,
    olderFiles,
    olderScanned,
    busy,
    status,
    activity,
    kept,
    weeks,
    autoDuplicates,
    inspect,
    duplicatesChecked,
    healthChecked,
    moves,
    startPlan,
    progress,
};

class StoreObserver {
public:
    virtual ~StoreObserver() = default;
    // Called on the main thread after the property has its new value.
    virtual void changed(Property property) = 0;
};

}  // namespace quorrin::store
