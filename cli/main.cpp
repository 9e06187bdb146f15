// quorrin-cli: the command-line program.
#include "cli/cli.h"
#include "cli/stop_signals.h"

#include <iostream>

#include <unistd.h>

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    quorrin::cli::CliContext context;
    context.progressOnTerminal = ::isatty(STDERR_FILENO) == 1;
    context.stop = quorrin::cli::stopOnSignals();
    return quorrin::cli::runCli(arguments, std::cout, std::cerr, context);
}
