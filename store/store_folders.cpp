// The Store's connected folders: adding through the chooser, removing, saving.
#include "engine/folder_rules.h"
#include "engine/move_record.h"
#include "engine/paths.h"
#include "store/store.h"

namespace quorrin::store {

void Store::addFolder() {
    if (!chooser_)
        return;
    std::optional<std::vector<std::string>> chosen = chooser_();
    if (!chosen)
        return;  // cancelled: nothing changes, nothing is saved
    addFolders(*chosen);
}

void Store::addFolders(const std::vector<std::string>& paths) {
    for (const std::string& chosen : paths) {
        const std::string path = Engine::standardise(chosen);
        if (!Engine::validUtf8(path)) {
            log("Could not connect " + path + ": Folder name is not valid UTF-8.");
            continue;
        }
        if (!Engine::allowedRoot(path, platform_)) {
            log("Choose a personal folder outside protected app and project folders.");
            continue;
        }
        const bool covered = std::any_of(roots_.begin(), roots_.end(), [&](const std::string& r) {
            return r == path || path.starts_with(r + "/");
        });
        if (covered)
            continue;
        std::erase_if(roots_, [&](const std::string& r) { return r.starts_with(path + "/"); });
        roots_.push_back(path);
    }
    saveRoots();
}

void Store::removeFolders(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        const std::string standard = Engine::standardise(path);
        std::erase_if(roots_, [&](const std::string& r) { return r == path || r == standard; });
    }
    saveRoots();
}

void Store::saveRoots() {
    const platform::Status written = settings_.writeRoots(roots_);
    set(Property::roots);
    files_ = shareEntries({});
    set(Property::files);
    olderFiles_.clear();
    set(Property::olderFiles);
    olderScanned_ = false;
    set(Property::olderScanned);
    reportSettingsWrite(written);
}

}  // namespace quorrin::store
