// quorrin_crash_child: quorrin-cli that kills itself with SIGKILL just before a chosen system call.
//
//   quorrin_crash_child OPERATION INDEX COMMAND...
//
// Runs COMMAND as quorrin-cli does, through a platform that counts the reading and changing calls
// (see FaultPlatform) and, just before the INDEX-th call of OPERATION ("any" counts every
// operation), sends itself SIGKILL: the process dies at that exact point as it would by an outside
// kill, with no chance to clean up. With INDEX 0 nothing is killed; instead the program writes
// "calls SCAN TRASH TOTAL": how many calls had been made when the scan ended, when
// the first file was moved into a category folder (the trash pass is over), and in all. That line
// goes to standard output, after the command's own lines.
#include "cli/cli.h"
#include "tests/support/fault_platform.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include <unistd.h>

int main(int argc, char** argv) {
    if (argc < 4) {
        std::cerr << "usage: quorrin_crash_child OPERATION INDEX COMMAND...\n";
        return 2;
    }
    const std::string operation = argv[1];
    const long index = std::strtol(argv[2], nullptr, 10);
    std::vector<std::string> arguments(argv + 3, argv + argc);

    static std::atomic<long> all{0};
    static std::atomic<long> matching{0};
    static std::atomic<long> scanEnd{0};
    static std::atomic<long> trashEnd{0};
    quorrin::testing::FaultPlatform platform;
    platform.fault = [&](const std::string& op,
                         const std::string&) -> std::optional<quorrin::platform::Error> {
        ++all;
        if (op == "moveNoReplaceInto" && trashEnd == 0)
            trashEnd = all - 1;
        if ((operation == "any" || op == operation) && ++matching == index)
            ::kill(::getpid(), SIGKILL);
        return std::nullopt;
    };
    quorrin::cli::CliContext context{.platform = platform};
    context.hooks.beforeArrangement = [] { scanEnd = all.load(); };
    int status = quorrin::cli::runCli(arguments, std::cout, std::cerr, context);
    if (index == 0)
        std::cout << "calls " << scanEnd << ' ' << trashEnd << ' ' << all << '\n';
    return status;
}
