// Times nerivane-cli as a script runs it: a whole process that calculates the start-up design
// and writes its JSON (target: 100 ms).
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cstdlib>

extern char** environ;

namespace {

void CliJsonProcess(benchmark::State& state) {
    char program[] = NERIVANE_CLI_PATH;
    char json[] = "--json";
    char outputFile[] = "/dev/null";
    char* argv[] = {program, json, outputFile, nullptr};
    for (auto _ : state) {
        pid_t pid = 0;
        if (posix_spawn(&pid, program, nullptr, nullptr, argv, environ) != 0) {
            state.SkipWithError("cannot start nerivane-cli");
            return;
        }
        int status = 0;
        waitpid(pid, &status, 0);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
            state.SkipWithError("nerivane-cli failed");
            return;
        }
    }
}
BENCHMARK(CliJsonProcess)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
