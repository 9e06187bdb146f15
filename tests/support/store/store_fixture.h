// StoreFixture: a Store over a temporary HOME, driven by a deterministic executor.
#pragma once

#include "store/manual_executor.h"
#include "store/store.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <memory>
#include <string>
#include <vector>

namespace quorrin::testing {

class StoreFixture {
public:
    // Documents, Downloads and Desktop exist, as in a real home.
    explicit StoreFixture(TempHome::Backing backing = TempHome::Backing::disk);

    TempHome home;
    FaultPlatform platform;
    store::ManualExecutor executor;
    std::vector<std::vector<std::string>> chooserAnswers;  // returned in turn; empty = cancel
    std::unique_ptr<store::Store> store;

    // Writes the settings file as the given JSON text before the Store is made.
    void writeSettings(const std::string& json) const;
    std::string settingsText() const;
    std::string historyPath() const;

    // Makes the Store (again, as a relaunch would).
    store::Store& open();
    // Runs every queued task, background and main, until nothing is left.
    void settle() { executor.runUntilIdle(); }
    // The activity texts, newest first.
    std::vector<std::string> activityTexts() const;
    const Engine::Entry* file(const std::string& path) const;
};

}  // namespace quorrin::testing
