// Measures the time of commands, with real sleeps. The simulated board answers almost at once. A command should
// therefore take as long as the bare pauses of the same number of transfers.

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
constexpr int kInitTransfers = 1802; // to the video processor; init also has one pause of 100 ms

/// Sends standard output and standard error to /dev/null while an object exists. Otherwise the output of the commands
/// would mix with the report of the benchmark.
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
        KOVAMFCCoef = 0; // as after program start, so that init loads the filters of the scaler each time
        Execute("init");
    }
}
BENCHMARK(Init)->Unit(benchmark::kMillisecond)->UseRealTime();

// Parsing the EDID makes only transfers to the transmitter. These transfers have no pauses.
void EdidStep(benchmark::State& state) {
    const SilentOutput silent;
    EDIDParseResult result{};
    for ([[maybe_unused]] auto _ : state) {
        ParseEDID(&result);
        ParseEDID(&result);
    }
}
BENCHMARK(EdidStep)->Unit(benchmark::kMillisecond)->UseRealTime();

// A pass of the control loop without its sleep of one second. The pass makes one pause.
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
    prctl(PR_SET_TIMERSLACK, 1000UL, 0UL, 0UL, 0UL); // the console does the same
    sim::Reset();
    sim::UseRealTime(1);
    sim::Plug(sim::kBuiltInEdid);
    open_kova();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
