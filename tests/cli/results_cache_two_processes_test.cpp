// Two quorrin-cli processes filling the results cache at once: each gives the results it gives
// without the cache, and neither loses the rows it computed.
#include "tests/cli/cli_fixture.h"
#include "tests/support/fault_platform.h"

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <set>
#include <tuple>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace quorrin::cli {
namespace {

using quorrin::testing::FaultPlatform;

constexpr int filesPerTree = 1000;
constexpr int rounds = 3;

// Per path on the duplicates page: the copy it duplicates and its finding.
using Listing = std::set<std::tuple<std::string, std::string, std::string>>;

Listing listingOf(const std::string& json) {
    Listing listing;
    for (const auto& entry : nlohmann::json::parse(json)) {
        const auto text = [&](const char* key) {
            return entry[key].is_null() ? std::string("-") : entry[key].get<std::string>();
        };
        listing.emplace(text("url"), text("duplicateOf"), text("issue"));
    }
    return listing;
}

class ResultsCacheTwoProcesses : public CliTest {
protected:
    // Small files in ten folders, in pairs of one size so that each is read; every other pair
    // is a pair of copies. `tag` keeps the contents of two trees apart.
    void buildTree(const std::string& root, char tag) {
        for (int i = 0; i < filesPerTree; ++i) {
            const int pair = i / 2;
            std::string content = std::string(1, tag) + " pair " + std::to_string(pair) + " ";
            content += pair % 2 == 0 ? 'x' : static_cast<char>('a' + i % 2);
            content += std::string(static_cast<std::size_t>(pair % 50), '.');
            home.writeFile(
                root + "/folder " + std::to_string(i % 10) + "/file " + std::to_string(i) + ".txt",
                content);
        }
    }

    // A settings folder whose settings connect `roots`; returns it, for XDG_CONFIG_HOME.
    std::string configFor(const std::string& name, const std::vector<std::string>& roots) {
        std::string json = R"({"roots":[)";
        for (std::size_t i = 0; i < roots.size(); ++i)
            json += (i ? R"(,")" : R"(")") + home.path(roots[i]) + R"(")";
        json += "]}";
        const std::string folder = home.base() + "/" + name;
        home.writeFile("../" + name + "/QUORRIN/settings.json", json);
        return folder;
    }

    // The duplicates page of one in-process run with `config`.
    Listing listIn(const std::string& config, const CliContext& with) {
        ::setenv("XDG_CONFIG_HOME", config.c_str(), 1);
        std::ostringstream out, err;
        const int status = runCli({"list", "--page", "duplicates", "--json"}, out, err, with);
        ::unsetenv("XDG_CONFIG_HOME");
        EXPECT_EQ(status, 0) << err.str();
        return listingOf(out.str());
    }

    // Starts quorrin-cli listing the duplicates page with `config`, its output going to files.
    pid_t spawnListing(const std::string& config, const std::string& output) {
        std::vector<std::string> words{QUORRIN_CLI_PROGRAM, "list", "--page", "duplicates",
                                       "--json"};
        std::vector<std::string> variables{"XDG_CONFIG_HOME=" + config};
        for (char** variable = environ; *variable != nullptr; ++variable) {
            const std::string text = *variable;
            if (!text.starts_with("XDG_CONFIG_HOME=") && !text.starts_with("XDG_CACHE_HOME="))
                variables.push_back(text);
        }
        std::vector<char*> argv, envp;
        for (auto& word : words)
            argv.push_back(word.data());
        argv.push_back(nullptr);
        for (auto& variable : variables)
            envp.push_back(variable.data());
        envp.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, (output + ".out").c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, (output + ".err").c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
        pid_t pid = -1;
        const int spawned =
            ::posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), envp.data());
        posix_spawn_file_actions_destroy(&actions);
        return spawned == 0 ? pid : -1;
    }

    static int waitFor(pid_t pid) {
        int status = 0;
        while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
        }
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_F(ResultsCacheTwoProcesses, BothKeepEveryRowAndAThirdJobReadsNothing) {
    buildTree("Downloads", 'A');
    buildTree("Documents", 'B');
    const std::string configA = configFor("config-a", {"Downloads"});
    const std::string configB = configFor("config-b", {"Documents"});
    const std::string configBoth = configFor("config-both", {"Downloads", "Documents"});

    // Without a cache: its folder is a file, so the cache is bypassed.
    home.writeFile("../no-cache", "");
    ::setenv("XDG_CACHE_HOME", (home.base() + "/no-cache").c_str(), 1);
    const Listing expectedA = listIn(configA, context);
    const Listing expectedB = listIn(configB, context);
    ::unsetenv("XDG_CACHE_HOME");
    ASSERT_EQ(expectedA.size(), static_cast<std::size_t>(filesPerTree / 4));
    ASSERT_EQ(expectedB.size(), static_cast<std::size_t>(filesPerTree / 4));
    Listing expectedBoth = expectedA;
    expectedBoth.insert(expectedB.begin(), expectedB.end());

    for (int round = 0; round < rounds; ++round) {
        ASSERT_EQ(run({"cache", "--clear"}).status, 0);
        const std::string outputA = home.base() + "/a", outputB = home.base() + "/b";
        const pid_t a = spawnListing(configA, outputA);
        const pid_t b = spawnListing(configB, outputB);
        ASSERT_GT(a, 0);
        ASSERT_GT(b, 0);
        EXPECT_EQ(waitFor(a), 0) << round;
        EXPECT_EQ(waitFor(b), 0) << round;
        EXPECT_EQ(listingOf(quorrin::testing::readFile(outputA + ".out")), expectedA) << round;
        EXPECT_EQ(listingOf(quorrin::testing::readFile(outputB + ".out")), expectedB) << round;
        for (const std::string& output : {outputA, outputB}) {
            const std::string said = quorrin::testing::readFile(output + ".err");
            EXPECT_EQ(said.find("Results cache unavailable"), std::string::npos) << said;
        }

        // Every file of both trees is found in the cache: not one is opened (the settings and
        // the history are).
        FaultPlatform counting;
        CliContext countingContext{.platform = counting};
        const std::string downloads = home.path("Downloads/"), documents = home.path("Documents/");
        int opens = 0;
        counting.fault = [&](const std::string& operation,
                             const std::string& path) -> std::optional<platform::Error> {
            opens += operation == "openForReading" &&
                     (path.starts_with(downloads) || path.starts_with(documents));
            return std::nullopt;
        };
        EXPECT_EQ(listIn(configBoth, countingContext), expectedBoth) << round;
        EXPECT_EQ(opens, 0) << round;
    }
}

}  // namespace
}  // namespace quorrin::cli
