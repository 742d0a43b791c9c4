#include "app/control_loop.h"
#include "edid/edid.h"
#include "hdmitx/hdmitx.h"
#include "kova/api.h"
#include "tests/board.h"

#include <algorithm>
#include <pthread.h>
#include <unistd.h>
#include <vector>

namespace {

using Edid = std::vector<std::uint8_t>;

const Edid& HdmiMonitor() {
    static const Edid edid(sim::kBuiltInEdid.begin(), sim::kBuiltInEdid.end());
    return edid;
}

const Edid& DviMonitor() {
    static const Edid edid = [] {
        Edid base(sim::kBuiltInEdid.begin(), sim::kBuiltInEdid.begin() + 128);
        --base[126]; // no extension
        ++base[127]; // checksum
        return base;
    }();
    return edid;
}

const Edid& NoMonitor() {
    static const Edid edid(128, 0x55);
    return edid;
}

/// The control loop, pass by pass in virtual time, and a log of what it says. The state machine's counters outlive a test,
/// so every test starts at a multiple of the longest period, without a sink.
class Loop : public Board {
protected:
    void SetUp() override {
        Board::SetUp();
        sim::KeepJournal(false);
        stOutVideoInfo = {};
        stOutVideoInfo.frmt = VIDOUT_1280x720p60;
        sim::TxRegister(sim::Page::Hdmi1, 0x08) = 0x36;
        sim::TxRegister(sim::Page::Hdmi2, 0x2F) = 0x01;
        Quietly([] { WriteNValue(6144); });
        constexpr unsigned kTwoPeriods = 2 * 992;
        do {
            Silently(1);
        } while (passes % kTwoPeriods != 0);
    }
    void TearDown() override {
        DefaultDVImode = 0;
        sim::Unplug();
        Silently(32);
        Board::TearDown();
    }

    static void Pass() {
        ++passes;
        sleep(1);
        KOVAAPI_GetParseIRQ();
        HDMIHandler();
    }
    static void Silently(int count) {
        Quietly([count] {
            for (int i = 0; i < count; ++i) {
                Pass();
            }
        });
    }

    /// Runs passes up to this one, counted from the test's start. Logs what they say, then how things stand.
    void RunTo(unsigned last) {
        while (pass < last) {
            ++pass;
            const std::string said = Messages(Capture(Pass).err);
            log += said.empty() ? "" : std::to_string(pass) + said + "\n";
        }
        LogState();
    }
    /// The same without what the passes say.
    void SkipTo(unsigned last) {
        Silently(static_cast<int>(last - pass));
        pass = last;
        LogState();
    }
    void LogState() {
        log += "  pass " + std::to_string(pass) + ": state " + std::to_string(OutputState) + ", TMDS "
               + (TmdsOn() ? "on" : "off") + "\n";
    }

    static bool TmdsOn() { return (sim::TxRegister(sim::Page::Hdmi1, 0x08) & 1) != 0; }

    /// A monitor whose coming, and whose receiver's power, the poll alone can notice.
    static void Attach(const Edid& edid, bool power = true) {
        sim::Plug(edid);
        sim::SetReceiver(power);
        sim::ForgetInterrupts();
    }
    static void Detach() {
        sim::Unplug();
        sim::ForgetInterrupts();
    }

    std::string log;
    unsigned pass = 0;

private:
    /// The messages, each after a bar; those of the EDID's report are left out.
    static std::string Messages(const std::string& err) {
        static const std::string kStart = " \n\r";
        std::string kept;
        for (std::size_t at = err.find(kStart); at != std::string::npos;) {
            at += kStart.size();
            const std::size_t next = err.find(kStart, at);
            std::string message = err.substr(at, next - at);
            message.erase(std::min(message.find("DecodeHeader"), message.size())); // begins the report on its own line
            std::replace(message.begin(), message.end(), '\n', '~');
            if (message.starts_with("HDMI") || message.starts_with("CRC16") || message.starts_with("EDID Error")) {
                kept += "|" + message;
            }
            at = next;
        }
        return kept;
    }

    inline static unsigned passes = 0;
};

// ---- Whole stories ----

TEST_F(Loop, WithoutASink) {
    sim::TxRegister(sim::Page::Hdmi1, 0x08) = 0x37;
    RunTo(7);
    RunTo(8); // the first poll
    sim::KeepJournal(true);
    RunTo(15); // idle passes read one register each
    EXPECT_EQ(Transfers(), "kova r 0010 0000\nkova r 0010 0000\nkova r 0010 0000\nkova r 0010 0000\nkova r 0010 0000\n"
                           "kova r 0010 0000\nkova r 0010 0000\n");
    RunTo(2000);
    ExpectGolden("loop-no-sink.txt", log);
}

TEST_F(Loop, MonitorsOfEachKind) {
    for (const auto& [name, monitor, forced] : {std::tuple{"HDMI monitor", &HdmiMonitor(), false},
                                                {"DVI monitor", &DviMonitor(), false},
                                                {"no EDID header", &NoMonitor(), false},
                                                {"DVI forced", &HdmiMonitor(), true}}) {
        TearDown();
        SetUp();
        pass = 0;
        log += std::string("== ") + name + "\n";
        sim::TxRegister(sim::Page::Hdmi1, 0x08) = 0x36;
        DefaultDVImode = forced ? 1 : 0;
        Attach(*monitor);
        RunTo(103);
        RunTo(104);
        RunTo(1500);
        log += "  InfoFrames " + std::to_string(sim::TxRegister(sim::Page::Hdmi2, 0x3E)) + "\n";
    }
    ExpectGolden("loop-monitors.txt", log);
}

TEST_F(Loop, TheReceiverLosesItsPowerAndGetsItBack) {
    Attach(HdmiMonitor(), false);
    RunTo(150);
    Attach(HdmiMonitor());
    RunTo(168); // needs no EDID
    Attach(HdmiMonitor(), false);
    RunTo(200); // the output is left as it was
    ExpectGolden("loop-receiver.txt", log);
}

TEST_F(Loop, UnplugAndReplug) {
    Attach(HdmiMonitor());
    RunTo(140);
    Detach(); // the poll sees it: four ticks to come back
    RunTo(168);
    Attach(DviMonitor());
    RunTo(330);
    sim::Unplug(); // the interrupt sees it: back at the next tick
    sim::Plug(HdmiMonitor());
    RunTo(331);
    RunTo(423);
    sim::Unplug(); // in the pass of a tick the interrupt comes before the poll
    sim::Plug(HdmiMonitor());
    RunTo(424);
    EXPECT_EQ(sim::KovaRegister(0x0E), 0x80); // enabled again
    ExpectGolden("loop-replug.txt", log);
}

TEST_F(Loop, AFailedFirstParseIsTriedAgainForEver) {
    Attach(HdmiMonitor());
    sim::SetDdcError(0x40);
    RunTo(104);
    SkipTo(104 + 3 * 992); // the time-out starts anew each time
    sim::SetDdcError(0);
    RunTo(104 + 3 * 992 + 64);
    ExpectGolden("loop-first-parse.txt", log);
}

TEST_F(Loop, AFailedSecondParseEndsInDviByTheTimeOut) {
    Attach(HdmiMonitor());
    static std::uint32_t whole; // transfers of a parse
    sim::SetDdcHook([](std::uint32_t transfer) { whole = transfer; });
    EDIDParseResult result{};
    Quietly([&] { EXPECT_EQ(ParseEDID(&result), 0); });
    // A step is one whole parse and the transfer that fails.
    sim::SetDdcHook([](std::uint32_t transfer) {
        static const std::uint32_t first = whole;
        sim::SetDdcError((transfer - first) % (whole + 1) == 0 ? 0x08 : 0x00);
    });
    RunTo(136);
    SkipTo(1975); // periods end at passes 984 and 1976
    RunTo(2000);
    ExpectGolden("loop-second-parse.txt", log);
}

TEST_F(Loop, ParsesThatDisagreeStartOver) {
    static Edid monitor;
    static bool changes;
    monitor = DviMonitor();
    changes = true;
    // Every read of the EDID's first bytes changes two that the sum does not notice.
    sim::SetDdcHook([](std::uint32_t /*transfer*/) {
        if (changes && sim::TxRegister(sim::Page::Hdmi1, 0xEF) == 0) {
            ++monitor[12];
            --monitor[13];
        }
    });
    Attach(monitor);
    RunTo(136);
    changes = false;
    RunTo(200);
    ExpectGolden("loop-disagreement.txt", log);
}

TEST_F(Loop, Audio) {
    sim::KovaRegister(0x2C) = 4; // 74.25 MHz
    sim::KovaRegister(0x2E) = 44;
    sim::KovaRegister(0x30) = 2;
    sim::SetAudio(44'100); // a change of the rate, by interrupt
    RunTo(3);
    log += "  N " + std::to_string(sim::TxRegister(sim::Page::Hdmi2, 0x04)) + "\n";
    sim::TxRegister(sim::Page::Hdmi2, 0x14) = 0x02; // S/PDIF, by the periodic check: once in HDMI mode
    RunTo(984);
    RunTo(984 + 992);
    sim::TxRegister(sim::Page::Hdmi2, 0x2F) = 0;
    RunTo(1976 + 992);
    ExpectGolden("loop-audio.txt", log);
}

TEST_F(Loop, ABoardThatFailsEveryThirdRequestForAnHourRecovers) {
    Attach(HdmiMonitor());
    sim::FailEvery(3);
    RunTo(3600);
    sim::FailEvery(0);
    RunTo(3600 + 3 * 32);
    EXPECT_EQ(OutputState, OUTPUT_HDMI);
    EXPECT_TRUE(TmdsOn());
}

// ---- The state machine, step by step ----

// The poll from every state, by hot plug and receiver sense. DVI is forced: state 1 does not stay.
TEST_F(Loop, ThePollMovesEveryState) {
    for (const std::uint8_t from :
         {OUTPUT_NO_SINK, OUTPUT_CHECK_EDID, OUTPUT_HDMI, OUTPUT_DVI, OUTPUT_HDMI_NO_POWER, OUTPUT_DVI_NO_POWER}) {
        for (const char* const sink : {"none", "plugged", "powered"}) {
            for (const bool tmds : {false, true}) {
                DefaultDVImode = 1;
                Attach(HdmiMonitor(), sink == std::string("powered"));
                if (sink == std::string("none")) {
                    Detach();
                }
                OutputState = from;
                OldOutputState = from == OUTPUT_NO_SINK ? from : 99;
                sim::TxRegister(sim::Page::Hdmi1, 0x08) = tmds ? 0x37 : 0x36;
                log += "== from state " + std::to_string(from) + ", TMDS " + (tmds ? "on" : "off") + ", sink " + sink
                       + "\n";
                pass = 0;
                RunTo(32);
                Detach(); // nothing is confirmed for the next one
                Silently(32);
            }
        }
    }
    ExpectGolden("loop-poll.txt", log);
}

// The receiver gets its power while the EDID is read, or not.
TEST_F(Loop, AssigningTheOutputSwitchesItOnOrWaitsForPower) {
    static bool power;
    for (const Edid* monitor : {&HdmiMonitor(), &DviMonitor()}) {
        for (const bool comes : {false, true}) {
            power = comes;
            sim::SetDdcHook([](std::uint32_t transfer) { sim::SetReceiver(transfer > 1 && power); });
            Attach(*monitor, false);
            while (OutputState < OUTPUT_HDMI) {
                Silently(1);
            }
            EXPECT_EQ(TmdsOn(), comes);
            EXPECT_EQ(OutputState, (monitor == &HdmiMonitor() ? OUTPUT_HDMI : OUTPUT_DVI) + (comes ? 0 : 16));
            sim::SetDdcHook(nullptr);
            Detach();
            Silently(32);
        }
    }
}

// ---- Interrupts ----

TEST_F(Loop, EachInterruptHasItsAction) {
    sim::KeepJournal(true);
    const auto handle = [this](const std::string& name) {
        OutputState = OUTPUT_DVI;
        Journal();
        const std::string said = Capture([] {
                                     KOVAAPI_GetParseIRQ();
                                     HDMITxInterruptHandler();
                                 }).err;
        log += "== " + name + "\n" + said + "\n" + Transfers() + "state " + std::to_string(OutputState) + "\n";
        OutputState = OUTPUT_NO_SINK;
    };
    sim::TxRegister(sim::Page::Hdmi1, 0x75) = 0xFF;
    for (const int status : {0x20, 0x40, 0x08, 0x10, 0x48, 0x80}) {
        sim::TxRegister(sim::Page::Hdmi1, 0x71) = static_cast<std::uint8_t>(status);
        handle("status " + std::to_string(status));
    }
    handle("not pending");
    sim::KovaRegister(0x10) = 0x80;
    handle("not the transmitter's");
    sim::FailRequests(1, 1); // a failed status read counts as every interrupt
    handle("status unreadable");
    sim::FailEvery(1);
    handle("nothing readable");
    sim::FailEvery(0);
    log += "== masks\n";
    Quietly([] {
        InitInterruptMasks();
        InitDVIInterruptMasks();
    });
    ExpectGolden("interrupts.txt", log + Transfers());
}

TEST_F(Loop, StoredInterruptsAreTakenOneByOne) {
    sim::KovaRegister(0x10) = 0x8081;
    KOVAAPI_GetParseIRQ();
    std::uint8_t pending = 0xEE;
    for (const auto& [irq, expected] :
         {std::pair{7, 1}, {7, 0}, {1, 0}, {15, 1}, {0, 1}, {0, 0}, {16, 0}, {65535, 0}}) {
        EXPECT_EQ(KOVAAPI_GetIRQStatus(static_cast<std::uint16_t>(irq), &pending), KOVA_NO_ERROR);
        EXPECT_EQ(pending, expected) << irq;
    }
    sim::KovaRegister(0x0E) = sim::KovaRegister(0x14) = sim::KovaRegister(0x16) = 0xAA2A;
    EXPECT_EQ(KOVAAPI_EnableIRQ(7, 3, 2, 1), KOVA_NO_ERROR); // bit 0 counts
    EXPECT_EQ(sim::KovaRegister(0x0E), 0xAAAA);
    EXPECT_EQ(sim::KovaRegister(0x14), 0xAA2A);
    EXPECT_EQ(sim::KovaRegister(0x16), 0xAAAA);
    EXPECT_EQ(KOVAAPI_EnableIRQ(16, 0, 0, 1), KOVA_I2C_ERROR);
}

// ---- The thread ----

TEST_F(Loop, WithoutAThreadTheProgramEnds) {
    EXPECT_EXIT(
        {
            pthread_attr_t attributes;
            pthread_attr_init(&attributes);
            pthread_attr_setstacksize(&attributes,
                                      std::size_t{15} << (sizeof(std::size_t) * 8 - 4)); // more than there is
            pthread_setattr_default_np(&attributes);
            ControlLoopStart();
        },
        testing::ExitedWithCode(1), "Thread creation failed: ");
}

} // namespace
