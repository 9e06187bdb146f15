// quorrin-cli when the settings cannot be saved: the failure on standard error, exit status 1.
#include "tests/cli/cli_fixture.h"
#include "tests/support/fault_platform.h"

#include <gtest/gtest.h>

namespace quorrin::cli {
namespace {

using quorrin::testing::FaultPlatform;

const std::string readOnly = "Could not save settings: Read-only file system\n";

class SettingsNotSavedCli : public CliTest {
protected:
    FaultPlatform failing;
    CliContext failingContext{.platform = failing};

    void SetUp() override {
        connectDownloads();
        failing.fault = FaultPlatform::failing("replaceFile", "settings.json", EROFS);
    }
    // Runs the command over the platform that cannot replace the settings file.
    CliResult run(std::vector<std::string> arguments) {
        std::ostringstream out, err;
        CliResult result;
        result.status = runCli(arguments, out, err, failingContext);
        result.out = out.str();
        result.err = err.str();
        return result;
    }
};

TEST_F(SettingsNotSavedCli, KeepPrintsItsLineThenFailsOnStandardError) {
    const std::string file = home.writeFile("Downloads/a.txt");
    CliResult result = run({"keep", file});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "Kept: a.txt\n");
    EXPECT_EQ(result.err, readOnly);
}

TEST_F(SettingsNotSavedCli, UnkeepFailsOnStandardError) {
    CliResult result = run({"unkeep", downloads("a.txt")});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, readOnly);
}

TEST_F(SettingsNotSavedCli, ReviewDoneAndWeeksFail) {
    CliResult done = run({"review", "--done"});
    EXPECT_EQ(done.status, 1);
    EXPECT_EQ(done.out, "Weekly Downloads review completed\n");
    EXPECT_EQ(done.err, readOnly);

    CliResult weeks = run({"review", "--weeks", "8"});
    EXPECT_EQ(weeks.status, 1);
    EXPECT_NE(weeks.err.find(readOnly), std::string::npos);
}

TEST_F(SettingsNotSavedCli, AddingAFolderFails) {
    const std::string pictures = home.makeDir("Pictures");
    CliResult result = run({"folders", "add", pictures});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, readOnly);
}

TEST_F(SettingsNotSavedCli, ACommandThatSavesNothingStillSucceeds) {
    home.writeFile("Downloads/a.txt");
    CliResult result = run({"scan"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
}

}  // namespace
}  // namespace quorrin::cli
