// quorrin_stop_child: quorrin-cli that receives a stop signal just before a chosen system call.
//
//   quorrin_stop_child SIGNAL OPERATION INDEX COMMAND...
//
// Runs COMMAND as quorrin-cli does, with the same signal handlers, through a platform that counts
// the reading and changing calls (see FaultPlatform); just before the INDEX-th call of OPERATION
// ("any" counts every operation) it raises SIGNAL ("INT" or "TERM") on the calling thread, whose
// handler has run by the time the call goes ahead: the signal arrives at that exact point, as a
// Ctrl+C or a kill would.
#include "cli/cli.h"
#include "cli/stop_signals.h"
#include "tests/support/fault_platform.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    if (argc < 5) {
        std::cerr << "usage: quorrin_stop_child SIGNAL OPERATION INDEX COMMAND...\n";
        return 2;
    }
    const int signal = std::string(argv[1]) == "TERM" ? SIGTERM : SIGINT;
    const std::string operation = argv[2];
    const long index = std::strtol(argv[3], nullptr, 10);
    std::vector<std::string> arguments(argv + 4, argv + argc);

    static std::atomic<long> matching{0};
    quorrin::testing::FaultPlatform platform;
    platform.fault = [&](const std::string& op,
                         const std::string&) -> std::optional<quorrin::platform::Error> {
        if ((operation == "any" || op == operation) && ++matching == index)
            std::raise(signal);
        return std::nullopt;
    };
    quorrin::cli::CliContext context{.platform = platform};
    context.stop = quorrin::cli::stopOnSignals();
    return quorrin::cli::runCli(arguments, std::cout, std::cerr, context);
}
