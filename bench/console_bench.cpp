// What the commands cost above the pauses that the hardware needs, with real sleeps. The board's answers cost next to
// nothing, so a command should take as long as the bare pauses that stand beside it.

#include "app/device.h"
#include "app/shell.h"
#include "sim/sim.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

constexpr int kDumpRegisters = 586;

/// While it lives, standard output goes nowhere: the report comes by the same way.
class SilentOutput {
public:
    SilentOutput() : saved(dup(STDOUT_FILENO)), nowhere(open("/dev/null", O_WRONLY)) {
        std::fflush(stdout);
        dup2(nowhere, STDOUT_FILENO);
    }
    ~SilentOutput() {
        std::fflush(stdout);
        dup2(saved, STDOUT_FILENO);
        close(saved);
        close(nowhere);
    }
    SilentOutput(const SilentOutput&) = delete;
    SilentOutput& operator=(const SilentOutput&) = delete;

private:
    int saved, nowhere;
};

void Execute(const char* line) {
    std::strcpy(input_command.data(), line);
    CommandProcess();
}

void BarePauses(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        for (int i = 0; i < state.range(0); ++i) {
            usleep(100);
        }
    }
}
BENCHMARK(BarePauses)->Arg(kDumpRegisters)->Unit(benchmark::kMillisecond)->UseRealTime();

void DumpKova(benchmark::State& state) {
    const SilentOutput silent;
    for ([[maybe_unused]] auto _ : state) {
        Execute("d kova");
    }
}
BENCHMARK(DumpKova)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    prctl(PR_SET_TIMERSLACK, 1000UL, 0UL, 0UL, 0UL); // as the console does
    sim::Reset();
    sim::UseRealTime(1);
    sim::Plug(sim::kBuiltInEdid);
    open_kova();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
