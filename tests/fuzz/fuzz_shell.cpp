// Types any text at the console. The shell must read on until "q" or until the end of the text. Only a write
// command may write to the chips.
//
// The input is the text.

#undef NDEBUG // the fuzzer needs the assertions
#include "app/device.h"
#include "app/shell.h"
#include "sim/sim.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view lines(reinterpret_cast<const char*>(data), size);
    const auto holds = [lines](const char* text) { return lines.find(text) != std::string_view::npos; };
    // These inputs are skipped. The loop thread would still run after the input ended. "init" takes longer than a
    // thousand other lines.
    if (size == 0 || holds("clstart") || holds("init")) {
        return 0;
    }
    sim::Reset();
    open_kova();
    sim::KeepJournal(true);
    input_command = {};
    std::string typed(lines);
    stdin = fmemopen(typed.data(), typed.size(), "r");
    RunShell();
    std::fclose(stdin);
    close_kova();

    const std::string journal = sim::TakeJournal();
    assert(std::string_view(input_command.data()) == "q"); // also if the input ended without it
    assert(holds("w") || holds("mru") || journal.find(" w ") == std::string::npos);
    // A line makes at most the transfers and pauses of a dump.
    assert(std::ranges::count(journal, '\n') <= 2 * 586 * (1 + std::ranges::count(lines, '\n')) + 1);
    return 0;
}
