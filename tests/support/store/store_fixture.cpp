// Sets up a Store over a temporary HOME and drives its manual executor until idle.
#include "tests/support/store/store_fixture.h"

#include <filesystem>

namespace quorrin::testing {

StoreFixture::StoreFixture(TempHome::Backing backing) : home(backing) {
    for (const char* name : {"Documents", "Downloads", "Desktop"})
        home.makeDir(name);
}

void StoreFixture::writeSettings(const std::string& json) const {
    std::filesystem::create_directories(home.path(".config/QUORRIN"));
    writeFileAt(home.path(".config/QUORRIN/settings.json"), json);
}

std::string StoreFixture::settingsText() const {
    return readFile(home.path(".config/QUORRIN/settings.json"));
}

std::string StoreFixture::historyPath() const {
    return home.path(".local/share/QUORRIN/last-organization.json");
}

store::Store& StoreFixture::open() {
    store.reset();
    store = std::make_unique<store::Store>(executor, platform, [this] {
        std::optional<std::vector<std::string>> answer;
        if (!chooserAnswers.empty()) {
            if (!chooserAnswers.front().empty())
                answer = chooserAnswers.front();
            chooserAnswers.erase(chooserAnswers.begin());
        }
        return answer;
    });
    return *store;
}

std::vector<std::string> StoreFixture::activityTexts() const {
    std::vector<std::string> texts;
    for (const auto& activity : store->activity())
        texts.push_back(activity.text());
    return texts;
}

const Engine::Entry* StoreFixture::file(const std::string& path) const {
    for (const auto& entry : store->files())
        if (entry.url == path)
            return &entry;
    return nullptr;
}

}  // namespace quorrin::testing
