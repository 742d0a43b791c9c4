#include "app/control_loop.h"
#include "edid/edid.h"
#include "tests/board.h"
#include "tests/edid_builder.h"

#include <pthread.h>
#include <span>

namespace {

/// Calls the handlers of a pass directly. The recorded sessions test the loop thread. Every test runs whole rounds of
/// the timer's phases. Each round has one poll, so every test starts at the same phase.
class Loop : public Board {
protected:
    void SetUp() override {
        Board::SetUp();
        stOutVideoInfo.frmt = VIDOUT_1280x720p60;
        sim::TxRegister(sim::Page::Hdmi1, 0x08) = 0x36;
        sim::TxRegister(sim::Page::Hdmi2, 0x2F) = 0x01;
        Rounds(1);
    }

    /// Runs rounds of the phases. @return their reports
    static std::string Rounds(int count) {
        return Capture([count] {
                   for (int pass = 0; pass < 32 * count; ++pass) {
                       HDMIHandler();
                   }
               })
            .err;
    }
    static bool TmdsOn() { return (sim::TxRegister(sim::Page::Hdmi1, 0x08) & 1) != 0; }

    /// Connects a monitor without an interrupt, so that only the poll can notice the monitor.
    static void Attach(std::span<const std::uint8_t> edid, bool power = true) {
        sim::Plug(edid);
        sim::SetReceiver(power);
        sim::ForgetInterrupts();
    }
    static void Detach() {
        sim::Unplug();
        sim::ForgetInterrupts();
    }
};

TEST_F(Loop, ParsesThatDisagreeStartOver) {
    static edid::Bytes monitor;
    static bool changes;
    monitor = edid::Base{}.Build();
    changes = true;
    // Every read of the EDID's first bytes changes two bytes. The checksum stays valid.
    sim::SetDdcHook([](std::uint32_t /*transfer*/) {
        if (changes && sim::TxRegister(sim::Page::Hdmi1, 0xEF) == 0) {
            ++monitor[12];
            --monitor[13];
        }
    });
    Attach(monitor);
    EXPECT_TRUE(Rounds(4).ends_with(" \n\rCRC16 error, try again!\n"));
    EXPECT_EQ(OutputState, 0);
    EXPECT_FALSE(TmdsOn());
    changes = false;
    EXPECT_TRUE(Rounds(1).ends_with(" \n\rEDID Error 12 "));
    EXPECT_EQ(OutputState, 5);
}

// Polls in every state, with every combination of hot plug and receiver sense. DVI is forced, so the poll changes state
// 1 (check EDID) to DVI at once.
TEST_F(Loop, PollChangesEveryState) {
    for (const std::uint8_t from :
         {OUTPUT_NO_SINK, OUTPUT_CHECK_EDID, OUTPUT_HDMI, OUTPUT_DVI, OUTPUT_HDMI_NO_POWER, OUTPUT_DVI_NO_POWER}) {
        for (const char* const sink : {"none   ", "plugged", "powered"}) {
            for (const bool tmds : {false, true}) {
                DefaultDVImode = 1;
                Attach(sim::kBuiltInEdid, sink == std::string("powered"));
                if (sink == std::string("none   ")) {
                    Detach();
                }
                OutputState = from;
                OldOutputState = from == OUTPUT_NO_SINK ? from : 99;
                sim::TxRegister(sim::Page::Hdmi1, 0x08) = tmds ? 0x37 : 0x36;
                std::string said = Rounds(1);
                std::erase_if(said, [](char c) { return c == '\n' || c == '\r'; });
                log << int{from} << (tmds ? " on,  " : " off, ") << sink << " -> " << int{OutputState}
                    << (TmdsOn() ? " on" : " off") << said << '\n';
                Detach(); // the next case starts without a confirmed sink
                Rounds(1);
            }
        }
    }
}

TEST_F(Loop, ReceiverPowerDuringEdidReadCounts) {
    sim::SetDdcHook([](std::uint32_t /*transfer*/) { sim::SetReceiver(true); });
    Attach(sim::kBuiltInEdid, false);
    Rounds(4);
    EXPECT_TRUE(TmdsOn());
    EXPECT_EQ(OutputState, 4);
}

// Before each action the interrupt line is disabled, and afterwards enabled. The log shows these transfers once.
TEST_F(Loop, EachInterruptHasItsAction) {
    const auto handle = [this](const std::string& name, const char* with = "hdmi") {
        OutputState = OUTPUT_DVI;
        Log(
            name,
            [] {
                KOVAAPI_GetParseIRQ();
                HDMITxInterruptHandler();
            },
            with);
        log << "state " << int{OutputState} << '\n';
    };
    sim::TxRegister(sim::Page::Hdmi1, 0x75) = 0xFF;
    for (const int status : {0x20, 0x40, 0x08, 0x10, 0x48, 0x80}) {
        sim::TxRegister(sim::Page::Hdmi1, 0x71) = static_cast<std::uint8_t>(status);
        handle("status " + std::to_string(status), status == 0x40 ? "" : "hdmi");
    }
    handle("not pending", "");
    sim::KovaRegister(0x10) = 0x80;
    handle("not the transmitter's");
    sim::FailRequests(1, 1); // a failed status read counts as every interrupt
    handle("status unreadable");
    sim::FailEvery(1);
    handle("nothing readable");
    sim::FailEvery(0);
    Log("masks", [] {
        InitInterruptMasks();
        InitDVIInterruptMasks();
    });
}

TEST_F(Loop, StoredInterruptsAreReportedOnce) {
    sim::KovaRegister(0x10) = 0x8081;
    KOVAAPI_GetParseIRQ();
    std::uint8_t pending = 0xEE;
    for (const auto& [irq, expected] :
         {std::pair{7, 1}, {7, 0}, {1, 0}, {15, 1}, {0, 1}, {0, 0}, {16, 0}, {65535, 0}}) {
        EXPECT_EQ(KOVAAPI_GetIRQStatus(static_cast<std::uint16_t>(irq), &pending), 0);
        EXPECT_EQ(pending, expected) << irq;
    }
    sim::KovaRegister(0x0E) = sim::KovaRegister(0x14) = sim::KovaRegister(0x16) = 0xAA2A;
    Log("7 with settings 1, 0, 1", [] { EXPECT_EQ(KOVAAPI_EnableIRQ(7, 3, 2, 1), 0); }); // only bit 0 counts
    Log("16", [] { EXPECT_EQ(KOVAAPI_EnableIRQ(16, 0, 0, 1), 1); });
}

// While ControlLoop_OnOff is 1, ControlLoopStart creates no thread and cannot fail. Afterwards it fails and ends the
// program.
TEST_F(Loop, ProgramEndsIfThreadCannotBeCreated) {
    EXPECT_EXIT(
        {
            pthread_attr_t attributes;
            pthread_attr_init(&attributes);
            pthread_attr_setstacksize(&attributes,
                                      std::size_t{15} << (sizeof(std::size_t) * 8 - 4)); // more memory than there is
            pthread_setattr_default_np(&attributes);
            ControlLoop_OnOff = 1;
            ControlLoopStart();
            ControlLoop_OnOff = 0;
            std::fputs("goes on\n", stderr);
            ControlLoopStart();
        },
        testing::ExitedWithCode(1), "goes on\nThread creation failed: ");
}

} // namespace
