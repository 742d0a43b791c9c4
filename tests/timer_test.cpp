#include "app/control_loop.h"
#include "edid/edid.h"
#include "hdmitx/hdmitx.h"
#include "kova/api.h"
#include "tests/board.h"

#include <pthread.h>
#include <unistd.h>
#include <vector>

namespace {

using Edid = std::vector<std::uint8_t>;

void FixChecksum(Edid& edid, std::size_t block) {
    unsigned sum = 0;
    for (std::size_t i = 0; i < 127; ++i) {
        sum += edid[block * 128 + i];
    }
    edid[block * 128 + 127] = static_cast<std::uint8_t>(0x100 - (sum & 0xFF));
}

const Edid kHdmiMonitor(sim::kBuiltInEdid.begin(), sim::kBuiltInEdid.end());
const Edid kDviMonitor = [] {
    Edid edid(kHdmiMonitor.begin(), kHdmiMonitor.begin() + 128);
    edid[126] = 0; // no extension
    FixChecksum(edid, 0);
    return edid;
}();
const Edid kNoMonitor(128, 0x55);

/// The control loop, pass by pass in virtual time. The state machine's counters outlive a test, so every test starts at
/// a multiple of the longest period, without a sink.
class Loop : public Board {
protected:
    void SetUp() override {
        Board::SetUp();
        sim::KeepJournal(false);
        stOutVideoInfo = {};
        stOutVideoInfo.frmt = VIDOUT_1280x720p60;
        sim::TxRegister(sim::Page::Hdmi1, 0x08) = 0x36;
        sim::TxRegister(sim::Page::Hdmi2, 0x2F) = 0x01;
        constexpr unsigned kTwoPeriods = 2 * 992;
        Quietly([] {
            do {
                Pass();
            } while (passes % kTwoPeriods != 0);
        });
        pass = 0;
        events.clear();
    }
    void TearDown() override {
        DefaultDVImode = 0;
        sim::Unplug();
        Quietly([] {
            for (int i = 0; i < 32; ++i) {
                Pass();
            }
        });
        Board::TearDown();
    }

    static void Pass() {
        ++passes;
        sleep(1);
        KOVAAPI_GetParseIRQ();
        HDMIHandler();
    }

    /// Runs passes up to this one, counted from the test's start, and notes what they say.
    void RunTo(unsigned last) {
        while (pass < last) {
            ++pass;
            const std::string err = Capture(Pass).err;
            const std::string kept = Events(err);
            if (!kept.empty()) {
                events += std::to_string(pass) + kept + "\n";
                said = err;
            }
        }
    }

    /// What has been said since the last call, a line a pass: the pass, then each message.
    std::string Take() {
        std::string taken;
        taken.swap(events);
        return taken;
    }

    /// All that the last pass with a message said, to the byte.
    std::string said;

    static bool TmdsOn() { return (sim::TxRegister(sim::Page::Hdmi1, 0x08) & 1) != 0; }

    /// Plugs a monitor in that was there before anything was noticed.
    static void AttachSilently(const Edid& edid) {
        sim::Plug(edid);
        sim::ForgetInterrupts();
    }

private:
    /// The messages but for the EDID's report, each after a bar.
    static std::string Events(const std::string& err) {
        static const std::string kStart = " \n\r";
        std::string kept;
        for (std::size_t at = err.find(kStart); at != std::string::npos;) {
            at += kStart.size();
            const std::size_t next = err.find(kStart, at);
            const std::string message = err.substr(at, next - at);
            if (message.starts_with("HDMI") || message.starts_with("CRC16") || message.starts_with("EDID Error")) {
                kept += "|" + message.substr(0, message.find('\n'));
            }
            at = next;
        }
        return kept;
    }

    inline static unsigned passes = 0;
    unsigned pass = 0;
    std::string events;
};

constexpr const char* kParse = "HDMI Tx : Cbl In, chk EDID|HDMITX : EDIDProcessing()";
constexpr const char* kInfoFrames = "|HDMI TX : SendAVIInfoFrame()|HDMI TX : DefaultAVIInfoFrame[0] = 0x41"
                                    "|HDMI TX : DefaultAVIInfoFrame[1] = 0xa9|HDMI TX : SendAUDInfoFrame()"
                                    "|HDMI TX : EnableInfoFrame( AVI InfoFram) --> INF_CTRL1=0x03"
                                    "|HDMI TX : EnableInfoFrame( AUD InfoFram) --> INF_CTRL1=0x33";

std::string At(unsigned pass, const std::string& messages) { return std::to_string(pass) + "|" + messages + "\n"; }

TEST_F(Loop, WithoutASinkTheOutputStaysOffAndNothingIsSaid) {
    sim::TxRegister(sim::Page::Hdmi1, 0x08) = 0x37;
    RunTo(7);
    EXPECT_TRUE(TmdsOn());
    RunTo(2000);
    EXPECT_FALSE(TmdsOn());
    EXPECT_EQ(Take(), "");
}

TEST_F(Loop, AnIdlePassReadsOneRegister) {
    RunTo(8);
    sim::KeepJournal(true);
    RunTo(15);
    EXPECT_EQ(Transfers(), "kova r 0010 0000\nkova r 0010 0000\nkova r 0010 0000\nkova r 0010 0000\nkova r 0010 0000\n"
                           "kova r 0010 0000\nkova r 0010 0000\n");
}

// The poll from every state, by hot plug and receiver sense; the EDID step of state 1 is forced to DVI here.
TEST_F(Loop, ThePollMovesEveryState) {
    enum : std::uint8_t { kNothing, kPlugged, kPowered };
    struct Case {
        std::uint8_t from, sink, to;
        bool tmdsBefore, tmds;
        const char* text; // to the byte
    };
    for (const Case& c : {
             Case{0, kNothing, 0, true, false, ""},
             Case{0, kPlugged, 0, true, true, ""},
             Case{0, kPowered, 0, false, true, ""}, // on as well while nothing is confirmed
             Case{1, kNothing, 0, true, false, " \n\rHDMI Tx : Cbl unplug\n"},
             Case{1, kPlugged, 5, false, false, " \n\rHDMI Tx : Cbl In, chk EDID\n"},
             Case{1, kPowered, 5, false, true, " \n\rHDMI Tx : Cbl In, chk EDID\n"},
             Case{4, kNothing, 0, true, false, " \n\rHDMI Tx : Cbl unplug\n"},
             Case{4, kPlugged, 20, true, true, " \n\rHDMI Tx : Cbl In, HDMI Out, RX has no power\n"},
             Case{4, kPowered, 4, false, true, " \n\rHDMI Tx : Cbl In, HDMI Out\n"},
             Case{5, kNothing, 0, true, false, " \n\rHDMI Tx : Cbl unplug\n"},
             Case{5, kPlugged, 21, true, true, " \n\rHDMI Tx : Cbl In, DVI Out, RX has no power\n"},
             Case{5, kPowered, 5, false, true, " \n\rHDMI Tx : Cbl In, DVI Out\n"},
             Case{20, kNothing, 0, true, false, " \n\rHDMI Tx : Cbl unplug\n"},
             Case{20, kPlugged, 20, false, false, " \n\rHDMI Tx : Cbl In, HDMI Out, RX has no power\n"},
             Case{20, kPowered, 4, false, true, " \n\rHDMI Tx : Cbl In, HDMI Out\n"},
             Case{21, kNothing, 0, true, false, " \n\rHDMI Tx : Cbl unplug\n"},
             Case{21, kPlugged, 21, false, false, " \n\rHDMI Tx : Cbl In, DVI Out, RX has no power\n"},
             Case{21, kPowered, 5, false, true, " \n\rHDMI Tx : Cbl In, DVI Out\n"},
         }) {
        DefaultDVImode = 1;
        c.sink == kNothing ? sim::Unplug() : AttachSilently(kHdmiMonitor);
        sim::SetReceiver(c.sink == kPowered);
        sim::ForgetInterrupts();
        OutputState = c.from;
        OldOutputState = c.from == 0 ? 0 : 99;
        sim::TxRegister(sim::Page::Hdmi1, 0x08) = c.tmdsBefore ? 0x37 : 0x36;
        said.clear();
        for (int i = 0; i < 32; ++i) { // one of them polls
            said += Capture(Pass).err;
        }
        EXPECT_EQ(OutputState, c.to) << int{c.from} << ' ' << int{c.sink};
        EXPECT_EQ(TmdsOn(), c.tmds) << int{c.from} << ' ' << int{c.sink};
        EXPECT_EQ(said, c.text);
        sim::Unplug(); // nothing confirmed for the next one
        sim::ForgetInterrupts();
        Quietly([] {
            for (int i = 0; i < 32; ++i) {
                Pass();
            }
        });
    }
}

TEST_F(Loop, AnHdmiMonitorGetsHdmiWithInfoFrames) {
    AttachSilently(kHdmiMonitor);
    RunTo(103);
    EXPECT_EQ(OutputState, OUTPUT_NO_SINK);
    RunTo(104);
    EXPECT_EQ(OutputState, OUTPUT_HDMI);
    EXPECT_TRUE(TmdsOn());
    EXPECT_EQ(sim::TxRegister(sim::Page::Hdmi2, 0x3E), 0x33);
    RunTo(1500);
    EXPECT_EQ(Take(), At(104, std::string(kParse) + kInfoFrames) + At(136, "HDMI Tx : Cbl In, HDMI Out"));
}

TEST_F(Loop, ADviMonitorGetsDvi) {
    AttachSilently(kDviMonitor);
    RunTo(200);
    EXPECT_EQ(Take(), At(104, std::string(kParse) + "|EDID Error 12 ") + At(136, "HDMI Tx : Cbl In, DVI Out"));
    EXPECT_TRUE(TmdsOn());
    EXPECT_EQ(sim::TxRegister(sim::Page::Hdmi2, 0x3E), 0);
}

// The receiver gets its power while the EDID is read.
TEST_F(Loop, AssigningTheOutputSwitchesItOnOrWaitsForPower) {
    static unsigned powerAt;
    for (const Edid* monitor : {&kHdmiMonitor, &kDviMonitor}) {
        for (powerAt = 0; powerAt < 2; ++powerAt) {
            sim::SetDdcHook([](std::uint32_t transfer) { sim::SetReceiver(transfer > 1 && powerAt == 1); });
            AttachSilently(*monitor);
            sim::SetReceiver(false);
            sim::ForgetInterrupts();
            Quietly([] {
                while (OutputState < OUTPUT_HDMI) {
                    Pass();
                }
            });
            EXPECT_EQ(TmdsOn(), powerAt == 1);
            EXPECT_EQ(OutputState, (monitor == &kHdmiMonitor ? OUTPUT_HDMI : OUTPUT_DVI) + (powerAt == 1 ? 0 : 16));
            sim::SetDdcHook(nullptr);
            sim::Unplug();
            sim::ForgetInterrupts();
            Quietly([] {
                while (OutputState != OUTPUT_NO_SINK) {
                    Pass();
                }
            });
        }
    }
}

TEST_F(Loop, AnUnreadableMonitorGetsDvi) {
    AttachSilently(kNoMonitor);
    RunTo(200);
    EXPECT_EQ(Take(), At(104, std::string(kParse) + "|EDID Error 08 ") + At(136, "HDMI Tx : Cbl In, DVI Out"));
}

TEST_F(Loop, ForcedDviReadsNoEdid) {
    DefaultDVImode = 1;
    AttachSilently(kHdmiMonitor);
    RunTo(200);
    EXPECT_EQ(Take(), At(104, "HDMI Tx : Cbl In, chk EDID") + At(136, "HDMI Tx : Cbl In, DVI Out"));
}

TEST_F(Loop, AReceiverWithoutPowerIsToldApartAndItsReturnNeedsNoEdid) {
    AttachSilently(kHdmiMonitor);
    sim::SetReceiver(false);
    sim::ForgetInterrupts();
    RunTo(150);
    EXPECT_EQ(Take(), At(104, kParse) + At(136, "HDMI Tx : Cbl In, HDMI Out, RX has no power"));
    EXPECT_FALSE(TmdsOn());
    sim::SetReceiver(true);
    sim::ForgetInterrupts();
    RunTo(168);
    EXPECT_EQ(Take(), At(168, "HDMI Tx : Cbl In, HDMI Out"));
    EXPECT_TRUE(TmdsOn());
    sim::SetReceiver(false);
    sim::ForgetInterrupts();
    RunTo(200);
    EXPECT_EQ(Take(), At(200, "HDMI Tx : Cbl In, HDMI Out, RX has no power"));
    EXPECT_TRUE(TmdsOn()); // left as it was
}

TEST_F(Loop, AnUnplugSeenByThePollNeedsFourTicksToComeBack) {
    AttachSilently(kHdmiMonitor);
    RunTo(140);
    Take();
    sim::Unplug();
    sim::ForgetInterrupts();
    RunTo(168);
    EXPECT_EQ(Take(), At(168, "HDMI Tx : Cbl unplug"));
    EXPECT_FALSE(TmdsOn());
    AttachSilently(kDviMonitor);
    RunTo(400);
    EXPECT_EQ(Take(), At(296, std::string(kParse) + "|EDID Error 12 ") + At(328, "HDMI Tx : Cbl In, DVI Out"));
}

TEST_F(Loop, AReplugSeenByTheInterruptComesBackAtTheNextTick) {
    AttachSilently(kHdmiMonitor);
    RunTo(140);
    Take();
    sim::TxRegister(sim::Page::Hdmi2, 0x3E) = 0;
    sim::Unplug();
    sim::Plug(kHdmiMonitor);
    RunTo(141);
    EXPECT_EQ(Take(), At(141, "HDMI TX : IRQ Asserted (HDMI IRQ Reg. =1) , HDMI INT STAT=0x60"));
    EXPECT_EQ(OutputState, OUTPUT_NO_SINK);
    EXPECT_FALSE(TmdsOn());
    RunTo(200);
    EXPECT_EQ(Take(), At(168, std::string(kParse) + kInfoFrames) + At(200, "HDMI Tx : Cbl In, HDMI Out"));
    EXPECT_EQ(sim::KovaRegister(0x0E), 0x80); // enabled again
}

// ---- Parses that fail or disagree ----

TEST_F(Loop, AFailedFirstParseIsTriedAgainForEver) {
    AttachSilently(kHdmiMonitor);
    sim::SetDdcError(0x40);
    RunTo(104);
    EXPECT_EQ(Take(), At(104, kParse));
    EXPECT_EQ(OutputState, OUTPUT_NO_SINK);
    EXPECT_FALSE(TmdsOn());
    RunTo(104 + 3 * 992); // the time-out starts anew each time
    Take();
    EXPECT_EQ(OutputState, OUTPUT_NO_SINK);
    sim::SetDdcError(0);
    RunTo(104 + 3 * 992 + 64);
    EXPECT_EQ(OutputState, OUTPUT_HDMI);
}

// The first DDC transfer of every second parse goes wrong.
TEST_F(Loop, AFailedSecondParseEndsInDviByTheTimeOut) {
    AttachSilently(kHdmiMonitor);
    static std::uint32_t perParse;
    sim::SetDdcHook([](std::uint32_t transfer) { perParse = transfer; });
    EDIDParseResult result{};
    Quietly([&] { EXPECT_EQ(ParseEDID(&result), 0); });
    // A step is one whole parse and the transfer that fails.
    static std::uint32_t first;
    first = perParse;
    sim::SetDdcHook(
        [](std::uint32_t transfer) { sim::SetDdcError((transfer - first) % (perParse + 1) == 0 ? 0x08 : 0x00); });
    RunTo(136);
    EXPECT_EQ(Take(), At(104, kParse) + At(136, "HDMITX : EDIDProcessing()"));
    EXPECT_EQ(OutputState, OUTPUT_CHECK_EDID);
    EXPECT_TRUE(TmdsOn());
    // Periods end at passes 984 and 1976.
    RunTo(1975);
    EXPECT_EQ(OutputState, OUTPUT_CHECK_EDID);
    Take();
    RunTo(2000);
    EXPECT_EQ(Take(), At(1992, "HDMI Tx : Cbl In, DVI Out"));
}

TEST_F(Loop, ParsesThatDisagreeStartOver) {
    static Edid monitor;
    static bool changes;
    monitor = kDviMonitor;
    changes = true;
    // Every read of the EDID's first bytes changes a byte that the sum does not notice.
    sim::SetDdcHook([](std::uint32_t) {
        if (changes && sim::TxRegister(sim::Page::Hdmi1, 0xEF) == 0) {
            ++monitor[12];
            --monitor[13];
        }
    });
    AttachSilently(monitor);
    RunTo(136);
    EXPECT_EQ(Take(), At(104, std::string(kParse) + "|CRC16 error, try again!")
                          + At(136, "HDMITX : EDIDProcessing()|CRC16 error, try again!"));
    EXPECT_EQ(OutputState, OUTPUT_NO_SINK);
    EXPECT_FALSE(TmdsOn());
    EXPECT_NE(said.find(" \n\rCRC16 error, try again!\n"), std::string::npos);
    changes = false;
    RunTo(200);
    EXPECT_EQ(OutputState, OUTPUT_DVI);
}

// ---- Audio ----

TEST_F(Loop, AnAudioRateChangeSetsN) {
    sim::KovaRegister(0x2C) = 4; // 74.25 MHz
    sim::KovaRegister(0x2E) = 44;
    sim::KovaRegister(0x30) = 2;
    Quietly([] { WriteNValue(6144); });
    sim::SetAudio(44'100);
    RunTo(3);
    EXPECT_EQ(Take(), At(1, "HDMI TX : IRQ Asserted (HDMI IRQ Reg. =1) , HDMI INT STAT=0x18"
                            "|HDMI TX: WaitForStableCTS() --> Stable"
                            "|HDMI TX : CTS Value = 808, N Value = 6144, Fs Value = 440"
                            "|HDMI TX : Get Audio Sample Rate = 44kHz"));
    EXPECT_EQ(sim::TxRegister(sim::Page::Hdmi2, 0x04), 6272 >> 8);
}

TEST_F(Loop, SpdifIsSwitchedOnByThePeriodicCheck) {
    sim::TxRegister(sim::Page::Hdmi2, 0x14) = 0x02;
    static constexpr std::array<std::uint32_t, 1> kCts{74'250};
    sim::PlayCts(kCts);
    Quietly([] { WriteNValue(6144); });
    RunTo(984);
    EXPECT_EQ(Take(), At(984, "HDMITX : IsSPDIFSelected|HDMI TX: WaitForStableCTS() --> Stable"
                              "|HDMI TX : CTS Value = 742, N Value = 6144, Fs Value = 479"
                              "|HDMI TX : Get Audio Sample Rate = 48kHz"));
    RunTo(984 + 992);
    EXPECT_EQ(Take(), At(1976, "HDMITX : IsSPDIFSelected"));
    sim::TxRegister(sim::Page::Hdmi2, 0x2F) = 0; // nothing of it in DVI mode
    RunTo(1976 + 992);
    EXPECT_EQ(Take(), "");
}

// ---- Interrupts ----

TEST_F(Loop, AnInterruptThatTheTransmitterDoesNotKnowIsOnlyUnmasked) {
    sim::KovaRegister(0x10) = 0x80;
    sim::KeepJournal(true);
    RunTo(1);
    EXPECT_EQ(Take(), At(1, "HDMI TX : IRQ Asserted (HDMI IRQ Reg. =0)"));
    EXPECT_EQ(Transfers(), "kova r 0010 0080\nkova r 000e 0000\nkova w 000e 0000\nkova r 0014 0000\nkova w 0014 0000\n"
                           "kova r 0016 0000\nkova w 0016 0000\nhdmi1 r 70 00\nkova r 000e 0000\nkova w 000e 0080\n"
                           "kova r 0014 0000\nkova w 0014 0000\nkova r 0016 0000\nkova w 0016 0000\n");
}

TEST_F(Loop, EachInterruptHasItsAction) {
    constexpr const char* kOff = "hdmi1 w 08 36\n";
    constexpr const char* kAudio = "hdmi1 w 71 18\n";
    struct Case {
        std::uint8_t status;
        std::string actions;
    };
    for (const Case& c : {Case{0x20, ""}, Case{0x40, kOff}, Case{0x08, kAudio}, Case{0x10, kAudio},
                          Case{0x48, std::string(kOff) + kAudio}, Case{0x80, ""}}) {
        sim::TxRegister(sim::Page::Hdmi1, 0x71) = c.status;
        sim::TxRegister(sim::Page::Hdmi1, 0x75) = 0xFF;
        OutputState = OUTPUT_DVI;
        sim::KeepJournal(true);
        Quietly([] {
            KOVAAPI_GetParseIRQ();
            HDMITxInterruptHandler();
        });
        EXPECT_EQ(JournalWith("hdmi1 w"), c.actions + "hdmi1 w 71 ff\n") << int{c.status};
        EXPECT_EQ(OutputState, (c.status & 0x40) != 0 ? OUTPUT_NO_SINK : OUTPUT_DVI);
    }
    OutputState = OUTPUT_NO_SINK;
}

TEST_F(Loop, AFailedStatusReadCountsAsEveryInterrupt) {
    sim::FailRequests(1, 1);
    RunTo(1);
    EXPECT_EQ(Take(), At(1, "HDMI TX : IRQ Asserted (HDMI IRQ Reg. =0)"));
    sim::FailEvery(1);
    RunTo(2);
    EXPECT_EQ(Take(), At(2, "HDMI TX : IRQ Asserted (HDMI IRQ Reg. =1) , HDMI INT STAT=0xFF"
                            "|HDMI TX: WaitForStableCTS() --> Stable"
                            "|HDMI TX : CTS Value = 167772, N Value = 16777215, Fs Value = 5794"
                            "|HDMI TX : Get Audio Sample Rate = 0kHz"));
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
    for (const int reg : {0x0E, 0x14, 0x16}) {
        sim::KovaRegister(static_cast<std::uint16_t>(reg)) = 0xAAAA;
    }
    EXPECT_EQ(KOVAAPI_EnableIRQ(7, 2, 3, 1), KOVA_NO_ERROR); // bit 0 counts
    EXPECT_EQ(sim::KovaRegister(0x0E), 0xAAAA);
    EXPECT_EQ(sim::KovaRegister(0x14), 0xAAAA);
    EXPECT_EQ(sim::KovaRegister(0x16), 0xAA2A);
    EXPECT_EQ(KOVAAPI_EnableIRQ(16, 0, 0, 1), KOVA_I2C_ERROR);
}

TEST_F(Loop, InterruptMasksAreAcknowledgedThenEnabled) {
    sim::KeepJournal(true);
    Quietly([] {
        InitInterruptMasks();
        InitDVIInterruptMasks();
    });
    EXPECT_EQ(Transfers(), "hdmi1 w 71 78\nhdmi1 w 75 78\nhdmi1 w 71 60\nhdmi1 w 75 60\n");
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

// ---- Endurance ----

TEST_F(Loop, ABoardThatFailsEveryThirdRequestForAnHourRecovers) {
    AttachSilently(kHdmiMonitor);
    sim::FailEvery(3);
    RunTo(3600);
    sim::FailEvery(0);
    Take();
    RunTo(3600 + 2 * 32 + 32);
    EXPECT_EQ(OutputState, OUTPUT_HDMI);
    EXPECT_TRUE(TmdsOn());
}

} // namespace
