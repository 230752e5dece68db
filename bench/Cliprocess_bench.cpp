// Times nerivane-cli as a script runs it: a whole process that calculates a design and writes
// its JSON. The start-up design has a 100 ms target; the 20-pole design is timed against
// ngspice's batch run of the netlist the command line exports for it, the two alternating in
// one loop so that a busy machine slows both alike (target: at least five times faster).
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

extern char** environ;

namespace {

// Runs the program to its end with standard output and error discarded; false when it could
// not start or failed.
bool Run(std::vector<std::string> args) {
    std::vector<char*> argv;
    for (std::string& arg : args) argv.push_back(arg.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&quiet, 2, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    const int started = posix_spawnp(&pid, argv[0], &quiet, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&quiet);
    if (started != 0) return false;
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void CliJsonProcess(benchmark::State& state) {
    for (auto _ : state) {
        if (!Run({NERIVANE_CLI_PATH, "--json", "/dev/null"}))
            return state.SkipWithError("nerivane-cli failed");
    }
}
BENCHMARK(CliJsonProcess)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

void Cli20PolesAgainstNgspice(benchmark::State& state) {
    const std::vector<std::string> design = {NERIVANE_CLI_PATH, "--poles", "20", "--response",
                                             "butterworth",     "--f0",    "5"};
    const std::string netlist =
        (std::filesystem::temp_directory_path() / "nerivane-bench-20-poles.cir").string();
    std::vector<std::string> exportNetlist = design;
    exportNetlist.insert(exportNetlist.end(), {"--spice", netlist});
    if (!Run(exportNetlist)) return state.SkipWithError("nerivane-cli cannot export the netlist");
    std::vector<std::string> json = design;
    json.insert(json.end(), {"--json", "/dev/null"});
    using Clock = std::chrono::steady_clock;
    Clock::duration cli{}, ngspice{};
    for (auto _ : state) {
        const auto start = Clock::now();
        if (!Run(json)) return state.SkipWithError("nerivane-cli failed");
        const auto middle = Clock::now();
        if (!Run({"ngspice", "-b", netlist})) return state.SkipWithError("ngspice failed");
        cli += middle - start;
        ngspice += Clock::now() - middle;
    }
    std::filesystem::remove(netlist);
    const double runs = static_cast<double>(state.iterations());
    state.counters["cli_ms"] = std::chrono::duration<double, std::milli>(cli).count() / runs;
    state.counters["ngspice_ms"] =
        std::chrono::duration<double, std::milli>(ngspice).count() / runs;
    state.counters["ngspice_over_cli"] =
        std::chrono::duration<double>(ngspice) / std::chrono::duration<double>(cli);
}
BENCHMARK(Cli20PolesAgainstNgspice)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);

}  // namespace
