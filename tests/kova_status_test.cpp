#include "kova/api.h"
#include "tests/kova_driver.h"

namespace {

class KovaStatus : public KovaDriver {
protected:
    SrcVideoInfo src{};

    static std::uint16_t HFrequency() {
        std::uint16_t value = 0;
        EXPECT_EQ(KOVAAPI_GetSyncHfreq(&value), KOVA_NO_ERROR);
        return value;
    }
    static std::uint16_t Lines() {
        std::uint16_t value = 0;
        EXPECT_EQ(KOVAAPI_GetSyncVline(&value), KOVA_NO_ERROR);
        return value;
    }
};

TEST_F(KovaStatus, IdSyncAndPattern) {
    std::uint16_t id = 0;
    std::uint8_t status = 0;
    std::uint8_t pattern = 0;
    sim::SetVideoInput({.syncStatus = 0xFFFE});
    sim::KovaRegister(0x4C0) = 0xFFF7;
    EXPECT_EQ(KOVAAPI_GetDeviceID(&id), KOVA_NO_ERROR);
    EXPECT_EQ(KOVAAPI_GetSyncStatus(&status), KOVA_NO_ERROR);
    EXPECT_EQ(KOVAAPI_GetInputPattern(&pattern), KOVA_NO_ERROR);
    EXPECT_EQ(std::tuple(id, status, pattern), std::tuple(0x83, 2, 5));
    EXPECT_EQ(Transfers(), "kova r 0004 0083\nkova w 04c6 0009\nkova r 04e0 fffe\nkova r 04c0 fff7\n");
}

TEST_F(KovaStatus, AMeasurementWaitsUntilTheChipIsReady) {
    sim::SetVideoInput({.measureReads = 2});
    const std::string request = "kova w 04d0 0001\nkova w 04c4 0001\nkova w 04c6 0009\nkova r 04d0 0001\n"
                                "kova w 04c6 0009\nkova r 04d0 0001\nkova w 04c6 0009\nkova r 04d0 8001\n";
    EXPECT_EQ(HFrequency(), 1716);
    EXPECT_EQ(Transfers(), "kova w 04c6 0009\nkova r 04e0 0000\nkova r 04c0 0000\n" + request
                               + "kova w 04c6 0009\nkova r 04e2 86b4\nkova w 04d0 0000\nkova w 04c4 0001\n");
    EXPECT_EQ(Lines(), 525);
    EXPECT_EQ(Transfers(), request
                               + "kova w 04c6 0009\nkova r 04e8 8106\nkova w 04c6 0009\nkova r 04e9 8107\n"
                                 "kova w 04d0 0000\nkova w 04c4 0001\n");
}

TEST_F(KovaStatus, WithoutSyncOrWithAPatternNoFrequencyIsMeasured) {
    sim::SetVideoInput({.syncStatus = 2});
    EXPECT_EQ(HFrequency(), 0xFFFF);
    EXPECT_EQ(Transfers(), "kova w 04c6 0009\nkova r 04e0 0002\n");
    sim::SetVideoInput({});
    sim::KovaRegister(0x4C0) = 0x0004;
    EXPECT_EQ(HFrequency(), 0xFFFF);
    EXPECT_EQ(Transfers(), "kova w 04c6 0009\nkova r 04e0 0000\nkova r 04c0 0004\n");
    EXPECT_EQ(Lines(), 525);
}

TEST_F(KovaStatus, ResultsCountWhenTheyAreValid) {
    for (const auto& [result, value] :
         {std::pair{0x8123, 0x0123}, {0x0123, 0xFFFF}, {0xFFFF, 0xFFFF}, {0xFFFE, 0x7FFE}}) {
        sim::SetVideoInput({.hFrequency = std::uint16_t(result)});
        EXPECT_EQ(HFrequency(), value);
    }
    for (const auto& [first, second, lines] : {std::tuple{0x8106, 0x8107, 525},
                                               {0x0106, 0x8107, 0xFFFF},
                                               {0x8106, 0x0107, 0xFFFF},
                                               {0x8FFF, 0x8107, 0xFFFF},
                                               {0x8106, 0x8FFF, 0xFFFF},
                                               {0xFFFE, 0xF001, 0xFFF}}) {
        sim::SetVideoInput({.linesField1 = std::uint16_t(first), .linesField2 = std::uint16_t(second)});
        EXPECT_EQ(Lines(), lines);
    }
}

TEST_F(KovaStatus, AMeasurementThatNeverEndsIsGivenUp) {
    for (const auto& [reads, lines] : {std::pair{4999U, 525}, {5000U, 0xFFFF}}) {
        sim::SetVideoInput({.measureReads = reads});
        EXPECT_EQ(Lines(), lines);
        const std::string transfers = Transfers();
        const auto count = std::count(transfers.begin(), transfers.end(), '\n');
        EXPECT_EQ(count, 2 + 2 * 5000 + (lines == 525 ? 4 : 0) + 2);
        EXPECT_TRUE(transfers.ends_with("kova w 04d0 0000\nkova w 04c4 0001\n"));
    }
    // On a chip that answers nothing every read is all ones.
    sim::FailEvery(1);
    Quietly([] {
        EXPECT_EQ(HFrequency(), 0xFFFF);
        EXPECT_EQ(Lines(), 0xFFFF);
    });
}

TEST_F(KovaStatus, InputPatternsAndTheInputAgain) {
    struct Case {
        SrcVideoInfo src;
        unsigned pattern;
        const char* writes;
    };
    // clang-format off
    for (Case c : {
             Case{{.mode = MUX656_10, .flags = 0x8003, .stActive = {704, 480}}, 3,
                  "4c0:000c 401:fffc 404:0000 402:ffcf 402:dfcf 402:dfcf u"},
             Case{{.mode = MUX656_8_B, .flags = 0x000F, .stActive = {1024, 768}}, 7,
                  "4c0:001e 401:fffc 405:0000 402:ffcf 402:dfcf 402:dfcf u"},
             Case{{.mode = RGB444_8, .flags = 0x8004, .stActive = {1920, 1080}}, 1, "4c0:0027 401:fffc 404:0000 u"},
             Case{{.mode = SEP422_10, .flags = 0x800B, .stActive = {1023, 480}}, 0xFFFF,
                  "4c0:fffc 401:fffc 404:0000 u"},
             Case{{.mode = SEP422_10, .flags = 0x8003}, 0,
                  "4c0:0001 402:ffcf 402:dfcf 402:dfc8 401:35af 4b0:ffff 404:0000 "
                  "402:df88 401:35ad 401:35a5 400:c7ff 400:c7f7 u"},
         }) {
        // clang-format on
        Fill(0xFFFF);
        EXPECT_EQ(KOVAAPI_SetInputPattern(&c.src, std::uint16_t(c.pattern)), KOVA_NO_ERROR);
        EXPECT_EQ(Short(), c.writes);
    }
    // The generator's field of each port
    for (const auto& [flags, scan] : {std::pair{0x8000, 0x1001}, {0, 0x1100}}) {
        Fill(0);
        src = {.mode = MUX656_10, .flags = std::uint16_t(flags)};
        KOVAAPI_SetSrcPtrnMode(&src);
        EXPECT_EQ(sim::KovaRegister(0x402), scan);
    }
}

TEST_F(KovaStatus, DisplaySwitches) {
    KOVAAPI_SetOutputPattern(0xFF);
    KOVAAPI_EnableDarkScreen(2);
    KOVAAPI_SetOutputPattern(0);
    KOVAAPI_EnableMainFreeze(0);
    KOVAAPI_EnableMainFreeze(4);
    KOVAAPI_DisplayOutWindow(2);
    KOVAAPI_DisplayOutWindow(0);
    EXPECT_EQ(Short(), "4c2:003c u 4c2:003e u 4c2:0002 u 4c2:0000 u 4c2:0002 u 4b0:0020 u 4b0:0000 u");
}

TEST_F(KovaStatus, PowerSaveIsExactlyOne) {
    EXPECT_EQ(KOVAAPI_PowerSaveEnable(1), KOVA_NO_ERROR);
    EXPECT_EQ(Short(), "03c:0fff 03c:4fff 01e:0001 01e:001f 020:0001 020:0003");
    EXPECT_EQ(KOVAAPI_PowerSaveEnable(2), KOVA_NO_ERROR);
    EXPECT_EQ(Short(), "03c:4000 03c:0000 01e:001e 01e:0000 020:0002 020:0000");
}

} // namespace
