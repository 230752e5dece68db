// nerivane-cli: the filter calculation without a window.
#include <iostream>

#include "cli/Cli.h"
#include "env/Allocator.h"

int main(int argc, char** argv) {
    nerivane::KeepCalculationMemory();
    const std::vector<std::string> args(argv, argv + argc);
    return nerivane::cli::RunCli(args, std::cin, std::cout, std::cerr);
}
