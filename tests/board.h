#pragma once
// What every test stands on: the simulated board, powered on and open, in virtual time.

#include "app/device.h"
#include "sim/sim.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

/// What a piece of code printed on standard output and standard error.
struct Printed {
    std::string out, err;
};

template <typename Code>
Printed Capture(Code code) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    code();
    Printed printed;
    printed.out = testing::internal::GetCapturedStdout();
    printed.err = testing::internal::GetCapturedStderr();
    return printed;
}

/// Runs code without showing what it prints.
template <typename Code>
void Quietly(Code code) {
    Capture(code);
}

/// Compares a text too long to stand in a test with the one recorded in tests/data. UPDATE_GOLDEN=1 records it.
inline void ExpectGolden(const std::string& name, const std::string& text) {
    const std::string path = std::string(KOVA_TEST_DATA "/") + name;
    if (std::getenv("UPDATE_GOLDEN") != nullptr) {
        std::ofstream(path, std::ios::binary) << text;
    }
    std::ifstream file(path, std::ios::binary);
    EXPECT_EQ(text, std::string(std::istreambuf_iterator<char>(file), {})) << path;
}

class Board : public testing::Test {
protected:
    void SetUp() override {
        sim::Reset();
        ASSERT_GE(open_kova(), 0);
        sim::KeepJournal(true);
    }
    void TearDown() override { close_kova(); }

    /// The journal since the last call, pauses included.
    static std::string Journal() { return sim::TakeJournal(); }

    /// The journal since the last call, those lines that hold text.
    static std::string JournalWith(const std::string& text) { return Filter(text, true); }
    /// The journal since the last call without the pauses: one line a transfer.
    static std::string Transfers() { return Filter("pause", false); }
    /// The journal since the last call, the writes only.
    static std::string Writes() { return JournalWith(" w "); }

private:
    static std::string Filter(const std::string& text, bool keep) {
        const std::string journal = sim::TakeJournal();
        std::string kept;
        for (std::size_t at = 0; at < journal.size();) {
            const std::size_t end = journal.find('\n', at) + 1;
            const std::string line = journal.substr(at, end - at);
            if ((line.find(text) != std::string::npos) == keep) {
                kept += line;
            }
            at = end;
        }
        return kept;
    }
};
