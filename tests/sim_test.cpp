#include "hdmitx/hdmitx.h"
#include "kova/api.h"
#include "tests/board.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

using Sim = Board;

std::string ReadFifo(unsigned count) {
    std::string bytes;
    Quietly([&] {
        for (unsigned i = 0; i < count; ++i) {
            bytes += static_cast<char>(HDTX_RegRead(HDTX_SLV0, 0xF4));
        }
    });
    return bytes;
}

// Address, segment, offset, count, command: as the DDC master's registers 0xED to 0xF3 want them.
void StartDdc(std::uint8_t address, std::uint8_t segment, std::uint8_t offset, std::uint8_t count,
              std::uint8_t command) {
    const std::array<std::uint8_t, 7> request{address, segment, offset, count, 0, 0, command};
    Quietly([&] { HDTX_MultiWrite(HDTX_SLV0, 0xED, request.data(), request.size()); });
}

std::uint8_t DdcStatus() {
    std::uint8_t status = 0;
    Quietly([&] { status = HDTX_RegRead(HDTX_SLV0, 0xF2); });
    return status;
}

TEST_F(Sim, TheDdcMasterReadsTheMonitorBySegmentAndOffset) {
    std::array<std::uint8_t, 3 * 128> edid{};
    edid[0x7E] = 'a';
    edid[0x7F] = 'b';
    edid[0x80] = 'c';
    edid[0x100] = 'd';
    sim::Plug(edid);
    StartDdc(0xA0, 0, 0x7E, 3, 0x02);
    EXPECT_EQ(DdcStatus(), 0);
    EXPECT_EQ(ReadFifo(4), std::string("abc\0", 4)); // an empty FIFO gives 0
    StartDdc(0xA0, 1, 0, 1, 0x04);
    EXPECT_EQ(ReadFifo(1), "d");
    StartDdc(0xA0, 1, 0x80, 1, 0x04);
    EXPECT_EQ(ReadFifo(1), "\xFF"); // beyond the dump
    StartDdc(0xA0, 1, 0x7E, 1, 0x02);
    EXPECT_EQ(ReadFifo(1), "a"); // a read without the segment pointer
}

TEST_F(Sim, TheDdcMasterIsBusyFailsAndFindsNobody) {
    sim::Plug(sim::kBuiltInEdid);
    sim::SetDdcBusy(2);
    StartDdc(0xA0, 0, 0, 8, 0x02);
    EXPECT_EQ(DdcStatus(), 0x10);
    EXPECT_EQ(DdcStatus(), 0x10);
    EXPECT_EQ(DdcStatus(), 0x00);
    sim::SetDdcBusy(0);
    sim::SetDdcError(0x40);
    StartDdc(0xA0, 0, 0, 8, 0x02);
    EXPECT_EQ(DdcStatus(), 0x40);
    sim::SetDdcError(0);
    StartDdc(0xA2, 0, 0, 8, 0x02);
    EXPECT_EQ(DdcStatus(), 0x20);
    sim::Unplug();
    StartDdc(0xA0, 0, 0, 8, 0x02);
    EXPECT_EQ(DdcStatus(), 0x20);
    EXPECT_EQ(ReadFifo(1), std::string(1, '\0'));
}

TEST_F(Sim, ThePlugRaisesTheInterruptOfBothChipsUntilItIsAcknowledged) {
    const auto pending = [] {
        std::uint16_t status = 0;
        KOVA_RegRead(0x10, &status);
        return status;
    };
    EXPECT_EQ(pending(), 0);
    sim::Plug(sim::kBuiltInEdid);
    EXPECT_EQ(pending(), 0x80);
    Quietly([] {
        EXPECT_EQ(HDTX_RegRead(HDTX_SLV0, 0x09), 0x06);
        EXPECT_EQ(HDTX_RegRead(HDTX_SLV0, 0x70), 1);
        EXPECT_EQ(HDTX_RegRead(HDTX_SLV0, 0x71), 0x60);
        HDTX_RegWrite(HDTX_SLV0, 0x71, 0x40);
        EXPECT_EQ(HDTX_RegRead(HDTX_SLV0, 0x71), 0x20);
        HDTX_RegWrite(HDTX_SLV0, 0x75, 0x40); // what is left is not enabled
        EXPECT_EQ(HDTX_RegRead(HDTX_SLV0, 0x70), 0);
    });
    EXPECT_EQ(pending(), 0);
}

// ---- Set up by a person ----

class SimSetUp : public testing::Test {
protected:
    void SetUp() override {
        ClearEnvironment();
        WriteFile(edid, std::string(128, 'x'));
    }
    void TearDown() override {
        ClearEnvironment();
        std::filesystem::remove_all(folder);
    }

    static void ClearEnvironment() {
        for (const char* name : {"KOVA_SIM_EDID", "KOVA_SIM_SPEED", "KOVA_SIM_SCRIPT"}) {
            unsetenv(name);
        }
    }
    static void WriteFile(const std::string& path, const std::string& content) {
        std::ofstream file(path, std::ios::binary);
        file << content;
        file.close();
        ASSERT_TRUE(file) << path;
    }
    static std::string MakeFolder() {
        std::string name = testing::TempDir() + "kova-sim-XXXXXX";
        return mkdtemp(name.data()) != nullptr ? name + "/" : "";
    }

    /// Sets the board up with this script. @return what it says, with the script's path as "script"
    std::string With(const std::string& text) {
        WriteFile(script, text);
        setenv("KOVA_SIM_SCRIPT", script.c_str(), 1);
        std::string said = Capture([] { good = sim::SetUpFromEnvironment(); }).err;
        if (const std::size_t at = said.find(script); at != std::string::npos) {
            said.replace(at, script.size(), "script");
        }
        EXPECT_EQ(said.empty(), good);
        return said;
    }

    inline static bool good = false;
    const std::string folder = MakeFolder();
    const std::string edid = folder + "monitor.bin";
    const std::string script = folder + "board.script";
};

TEST_F(SimSetUp, AScriptsEventsHappenInTime) {
    setenv("KOVA_SIM_EDID", edid.c_str(), 1);
    EXPECT_EQ(With("0.5 unplug # comment\n\n1.0\tplug\n1 receiver off\n2 fail 2\n3 fail every 2\n4 fail none\n"), "");
    sim::UseVirtualTime();
    ASSERT_GE(open_kova(), 0);
    const auto status = [] {
        std::int32_t value = 0;
        Quietly([&] { value = read_hdmi(0x72, 0x09); });
        return value;
    };
    struct Step {
        useconds_t pause;
        std::int32_t status;
    };
    for (const Step& step :
         {Step{0, 0x06}, Step{499'999, 0x06}, Step{1, 0x00}, Step{500'000, 0x02}, Step{1'000'000, -1}, Step{0, -1},
          Step{0, 0x02}, Step{1'000'000, 0x02}, Step{0, -1}, Step{0, 0x02}, Step{1'000'000, 0x02}, Step{0, 0x02}}) {
        usleep(step.pause);
        EXPECT_EQ(status(), step.status) << sim::Now();
    }
    close_kova();
}

TEST_F(SimSetUp, ABadLineIsNamed) {
    constexpr const char* kFail = "fail COUNT, fail every N or fail none\n";
    for (const auto& [text, said] : {
             std::pair<std::string, std::string>{"x unplug", "1: expected: SECONDS EVENT [ARGUMENT]\n"},
             {"\n1", "2: expected: SECONDS EVENT [ARGUMENT]\n"},
             {"-1 unplug", "1: expected: SECONDS EVENT [ARGUMENT]\n"},
             {"nan unplug", "1: expected: SECONDS EVENT [ARGUMENT]\n"},
             {"5 unplug\n4 plug", "2: earlier than the line before it\n"},
             {"0 unplug now", "1: expected: SECONDS unplug\n"},
             {"0 receiver maybe", "1: expected: SECONDS receiver on|off\n"},
             {"0 audio", "1: expected: SECONDS audio off|HERTZ [JITTER]\n"},
             {"0 fail -1", std::string("1: expected: SECONDS ") + kFail},
             {"0 fail every 0", std::string("1: expected: SECONDS ") + kFail},
             {"0 explode",
              std::string("1: expected: SECONDS plug [FILE], unplug, receiver on|off, audio off|HERTZ [JITTER], ")
                  + kFail},
         }) {
        EXPECT_EQ(With(text), "kova-sim: script:" + said);
    }
    EXPECT_EQ(With("0 plug nowhere.bin"),
              "kova-sim: cannot open the EDID file 'nowhere.bin': No such file or directory\n");
    EXPECT_EQ(With("#" + std::string(5000, 'x')), "kova-sim: script:1: line too long\n");
}

TEST_F(SimSetUp, ABadSpeedOrMonitorIsRefused) {
    for (const char* speed : {"fast", "0", "-1", "nan", "1x"}) {
        setenv("KOVA_SIM_SPEED", speed, 1);
        EXPECT_NE(With("").find("KOVA_SIM_SPEED"), std::string::npos) << speed;
    }
    unsetenv("KOVA_SIM_SPEED");
    for (const std::size_t size : {0, 127, 129, 257 * 128}) {
        WriteFile(edid, std::string(size, 'x'));
        setenv("KOVA_SIM_EDID", edid.c_str(), 1);
        EXPECT_NE(With("").find("is no binary EDID"), std::string::npos) << size;
    }
}

} // namespace
