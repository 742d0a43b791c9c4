// What the commands cost above the pauses that the hardware needs, with real sleeps. The board's answers cost next to
// nothing, so a command should take as long as the bare pauses that stand beside it.

#include "app/control_loop.h"
#include "app/device.h"
#include "app/shell.h"
#include "edid/edid.h"
#include "kova/api.h"
#include "kova/state.h"
#include "sim/sim.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

constexpr int kDumpTransfers = 586;
constexpr int kInitTransfers = 1802; // to the video processor; a pause of 100 ms comes to them

/// While it lives, both outputs go nowhere: the report comes by the same way.
class SilentOutput {
public:
    SilentOutput() : out(dup(STDOUT_FILENO)), err(dup(STDERR_FILENO)), nowhere(open("/dev/null", O_WRONLY)) {
        std::fflush(stdout);
        dup2(nowhere, STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
    }
    ~SilentOutput() {
        std::fflush(stdout);
        dup2(out, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);
        for (const int fd : {out, err, nowhere}) {
            close(fd);
        }
    }
    SilentOutput(const SilentOutput&) = delete;
    SilentOutput& operator=(const SilentOutput&) = delete;

private:
    int out, err, nowhere;
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
BENCHMARK(BarePauses)->Arg(1)->Arg(kDumpTransfers)->Arg(kInitTransfers)->Unit(benchmark::kMillisecond)->UseRealTime();

void DumpKova(benchmark::State& state) {
    const SilentOutput silent;
    for ([[maybe_unused]] auto _ : state) {
        Execute("d kova");
    }
}
BENCHMARK(DumpKova)->Unit(benchmark::kMillisecond)->UseRealTime();

void Init(benchmark::State& state) {
    const SilentOutput silent;
    for ([[maybe_unused]] auto _ : state) {
        KOVAMFCCoef = 0; // as after the program's start: the scaler's filters are loaded as well
        Execute("init");
    }
}
BENCHMARK(Init)->Unit(benchmark::kMillisecond)->UseRealTime();

// No pauses: transmitter transfers only.
void EdidStep(benchmark::State& state) {
    const SilentOutput silent;
    EDIDParseResult result{};
    for ([[maybe_unused]] auto _ : state) {
        ParseEDID(&result);
        ParseEDID(&result);
    }
}
BENCHMARK(EdidStep)->Unit(benchmark::kMillisecond)->UseRealTime();

// A pass of the control loop without its second of sleep: one pause.
void IdlePass(benchmark::State& state) {
    const SilentOutput silent;
    sim::Unplug();
    sim::ForgetInterrupts();
    for ([[maybe_unused]] auto _ : state) {
        KOVAAPI_GetParseIRQ();
        HDMIHandler();
    }
}
BENCHMARK(IdlePass)->Unit(benchmark::kMillisecond)->UseRealTime();

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
