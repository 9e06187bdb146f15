// On a terminal the command line shows how far an operation is once it can tell.
#include "cli/session.h"
#include "tests/cli/cli_fixture.h"

namespace quorrin::cli {
namespace {

TEST(ProgressLine, APercentOnceTheOperationCanTell) {
    EXPECT_EQ(progressLine("Reading Downloads…", {}), "Reading Downloads…");
    EXPECT_EQ(progressLine("Comparing content • a.mov", {.done = 45, .total = 100}),
              "[45%] Comparing content • a.mov");
    EXPECT_EQ(progressLine("Comparing content • a.mov", {.done = 3, .total = 3}),
              "[100%] Comparing content • a.mov");
}

TEST_F(CliTest, CheckDuplicatesOnATerminalShowsThePercentRead) {
    connectDownloads();
    home.writeFile("Downloads/a.mov", std::string(200'000, 'x'));
    home.writeFile("Downloads/b.mov", std::string(200'000, 'x'));
    context.progressOnTerminal = true;
    auto result = run({"scan", "--duplicates"});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.err.find("[100%] Comparing content • "), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("\r\033[KReading Downloads…"), std::string::npos) << result.err;
}

}  // namespace
}  // namespace quorrin::cli
