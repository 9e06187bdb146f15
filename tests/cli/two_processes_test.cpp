// Two quorrin-cli processes running Start at once lose no history record.
#include "tests/cli/cli_fixture.h"

#include <nlohmann/json.hpp>
#include <set>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace quorrin::cli {
namespace {

using quorrin::testing::existsNoFollow;

pid_t spawnCli(const std::vector<std::string>& arguments) {
    std::vector<std::string> words{QUORRIN_CLI_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (auto& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t pid = -1;
    int spawned = ::posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return spawned == 0 ? pid : -1;
}

int waitFor(pid_t pid) {
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(CliTest, TwoStartsAtOnceLoseNoHistoryRecord) {
    home.makeDir("Downloads");
    home.makeDir("Documents");
    home.writeFile(".config/QUORRIN/settings.json",
                   R"({"roots":[")" + downloads() + R"(",")" + home.path("Documents") + R"("]})");
    std::vector<std::string> originals;
    for (int i = 0; i < 200; ++i) {
        originals.push_back(home.writeFile("Downloads/d" + std::to_string(i) + ".txt",
                                           "download " + std::to_string(i)));
        originals.push_back(home.writeFile("Documents/p" + std::to_string(i) + ".pdf",
                                           "document " + std::to_string(i)));
    }
    pid_t first = spawnCli({"start"});
    pid_t second = spawnCli({"start"});
    ASSERT_GT(first, 0);
    ASSERT_GT(second, 0);
    int firstStatus = waitFor(first);
    int secondStatus = waitFor(second);
    // A run either completes or, when the other held the history too long, changes nothing.
    EXPECT_TRUE(firstStatus == 0 || firstStatus == 1);
    EXPECT_TRUE(secondStatus == 0 || secondStatus == 1);
    EXPECT_TRUE(firstStatus == 0 || secondStatus == 0);

    nlohmann::json history = nlohmann::json::parse(quorrin::testing::readFile(historyPath()));
    std::set<std::string> recordedFrom;
    for (const auto& record : history) {
        EXPECT_TRUE(recordedFrom.insert(record["from"].get<std::string>()).second)
            << "a file recorded twice: " << record["from"];
        EXPECT_TRUE(existsNoFollow(record["to"].get<std::string>())) << record["to"];
    }
    // Every file that left its place is in the history, and every file is somewhere.
    for (const std::string& original : originals) {
        if (!existsNoFollow(original)) {
            EXPECT_TRUE(recordedFrom.contains(original)) << original << " moved unrecorded";
        }
    }
    EXPECT_EQ(history.size(), originals.size());

    ASSERT_EQ(waitFor(spawnCli({"undo"})), 0);
    for (const std::string& original : originals)
        EXPECT_TRUE(existsNoFollow(original)) << original;
}

}  // namespace
}  // namespace quorrin::cli
