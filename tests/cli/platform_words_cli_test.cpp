// Nothing quorrin-cli prints on Linux speaks of another platform: every command's help, and every
// command run over a tree that gives each of them something to report.
#include "tests/cli/cli_fixture.h"
#include "tests/support/platform_words.h"

namespace quorrin::cli {
namespace {

using quorrin::testing::platformWordIn;
using quorrin::testing::runProgram;

TEST_F(CliTest, NoHelpTextNamesAnotherPlatform) {
    for (std::string command : {"", "folders", "scan", "start", "undo", "keep", "unkeep", "clear",
                                "older", "review", "list"}) {
        std::vector<std::string> words{"--help"};
        if (!command.empty())
            words.insert(words.begin(), command);
        auto help = run(words);
        EXPECT_EQ(help.status, 0) << command;
        EXPECT_NE(help.out.find("Usage: quorrin-cli"), std::string::npos) << command;
        EXPECT_EQ(platformWordIn(help.out + help.err), "") << help.out;
    }
    // The installed program prints the same help.
    std::string out;
    EXPECT_EQ(runProgram(QUORRIN_CLI_PROGRAM, {"--help"}, &out), 0);
    EXPECT_NE(out.find("Commands:"), std::string::npos);
    EXPECT_EQ(platformWordIn(out), "");
}

TEST_F(CliTest, NoCommandOutputNamesAnotherPlatform) {
    connectDownloads();
    home.writeFile("Downloads/report.pdf", "not a pdf");
    home.writeFile("Downloads/photo.jpg", "not an image");
    home.writeFile("Downloads/empty.txt", "");
    home.writeFile("Downloads/setup.sh", "#!/bin/sh\n");
    home.writeFile("Downloads/copy a.txt", "same");
    home.writeFile("Downloads/copy b.txt", "same");
    home.writeFile("Downloads/kept.txt", "k");

    std::string printed;
    auto record = [&](std::vector<std::string> words) {
        auto result = run(words);
        printed += result.out + result.err;
        return result;
    };
    record({"folders"});
    record({"folders", "add", home.path("Library")});
    record({"scan"});
    record({"scan", "--duplicates"});
    record({"scan", "--health"});
    record({"scan", "--usage"});
    record({"list", "--page", "health"});
    record({"keep", downloads("kept.txt")});
    record({"older", "--older-than", "1"});
    record({"review", "--weeks", "1"});
    record({"review", "--done"});
    record({"start", "--keep-duplicates"});
    auto undo = record({"undo"});
    record({"unkeep", downloads("kept.txt")});
    record({"clear", "--duplicates", downloads("copy b.txt")});
    record({"start"});
    record({"frobnicate"});
    EXPECT_NE(undo.out.find(" arranged files. Trashed files can be restored from the Trash.\n"),
              std::string::npos)
        << undo.out;
    EXPECT_EQ(platformWordIn(printed), "") << printed;
}

}  // namespace
}  // namespace quorrin::cli
