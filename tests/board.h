#pragma once
// The fixtures of the tests. With the fixture Board each test starts with the drivers' default values and with the
// simulated board as at power-on. The device node is open, and the time is virtual.

#include "app/device.h"
#include "hdmitx/hdmitx.h"
#include "kova/api.h"
#include "sim/sim.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>

/// The text that code printed on standard output and on standard error.
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
    if (testing::Test::HasFailure()) { // the failure's message is in the captured output
        std::fputs(printed.out.c_str(), stdout);
    }
    return printed;
}

/// Runs code and hides its output.
template <typename Code>
void Quietly(Code code) {
    Capture(code);
}

/// A test with a log. The log is compared with the file of the test's name in tests/data. UPDATE_GOLDEN=1 records the
/// file.
class Recorded : public testing::Test {
protected:
    void TearDown() override {
        const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
        const std::string path = std::string(KOVA_TEST_DATA "/") + test.test_suite_name() + '.' + test.name() + ".txt";
        if (std::getenv("UPDATE_GOLDEN") != nullptr && !log.str().empty() && !HasFailure()) {
            std::ofstream(path, std::ios::binary) << log.str();
        }
        std::ifstream file(path, std::ios::binary);
        EXPECT_EQ(log.str(), std::string(std::istreambuf_iterator<char>(file), {})) << path;
    }
    std::ostringstream log;
};

class Board : public Recorded {
protected:
    void SetUp() override {
        sim::Reset();
        stOutVideoInfo = {};
        OutVideoMode = OutVideoFrmt = SrcVideoFrmt = 0;
        InitHDMITXVariable();
        ASSERT_GE(open_kova(), 0);
        sim::KeepJournal(true);
    }
    void TearDown() override {
        close_kova();
        Recorded::TearDown();
    }

    /// Each of the next four functions takes the journal since the last call of any of them. This one returns all of
    /// it.
    static std::string Journal() { return sim::TakeJournal(); }

    /// The journal's lines that contain this text.
    static std::string JournalWith(const std::string& text) { return Filter(text, true); }
    /// The journal without the lines of pauses. Each transfer has one line.
    static std::string Transfers() { return Filter("pause", false); }
    /// The journal's lines of writes.
    static std::string Writes() { return JournalWith(" w "); }

    /// Adds an operation to the log: its name, its messages and its transfers. If a text is given, only the journal
    /// lines that contain the text are added.
    template <typename Operation>
    void Log(const std::string& name, Operation operation, const std::string& with = "") {
        Transfers();
        const std::string said = Capture(operation).err;
        const std::string transfers = Packed(with.empty() ? Transfers() : JournalWith(with));
        log << "== " << name << '\n'
            << said << (said.empty() ? "" : "\n") << transfers << (transfers.empty() ? "" : "\n");
    }
    /// Transfers in a short form: "hdmi1 r 70:ff 20 hdmi1 w 71:ff", "kova w 0500:6c10 bb10 u". The kind ("kova w") is
    /// written only where it changes. Consecutive registers have only the address of the first one. "u" is a local
    /// update. Long lines are wrapped.
    /// @param kind  a kind that the text leaves out at its start
    static std::string Packed(const std::string& journal, std::string kind = "") {
        std::string text;
        std::size_t start = 0;
        unsigned long next = 0;
        std::istringstream lines(journal);
        for (std::string line; std::getline(lines, line);) { // "kova w 0500 6c10"
            const std::size_t at = line.find(' ') + 3, end = line.find(' ', at);
            const unsigned long addr = std::stoul(line.substr(at), nullptr, 16);
            const bool same = line.substr(0, at) == kind;
            if (same && addr == next) {
                text += line.substr(end);
            } else {
                const bool full = text.size() - start > 110;
                start = full ? text.size() : start;
                text += full ? "\n    " : text.empty() ? "" : " ";
                kind = line.substr(0, at);
                line[end] = ':';
                text += same && line.ends_with("04c4:0001") ? "u" : line.substr(same ? at : 0);
            }
            next = addr + 1;
        }
        return text;
    }

private:
    static std::string Filter(const std::string& text, bool keep) {
        std::string kept;
        std::istringstream journal(sim::TakeJournal());
        for (std::string line; std::getline(journal, line);) {
            if ((line.find(text) != std::string::npos) == keep) {
                kept += line + '\n';
            }
        }
        return kept;
    }
};
