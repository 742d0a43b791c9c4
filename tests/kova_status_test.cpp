#include "tests/kova_driver.h"

#include <algorithm>

namespace {

using KovaStatus = KovaDriver;

template <typename Value>
Value Get(std::uint8_t (*get)(Value*)) {
    Value value{};
    EXPECT_EQ(get(&value), 0);
    return value;
}
int HFrequency() { return Get(KOVAAPI_GetSyncHfreq); }
int Lines() { return Get(KOVAAPI_GetSyncVline); }

TEST_F(KovaStatus, StatusAndMeasurementsAreRead) {
    sim::SetVideoInput({.syncStatus = 0xFFFE});
    sim::KovaRegister(0x4C0) = 0xFFF7;
    log << "ID " << Get(KOVAAPI_GetDeviceID);
    log << ", sync " << int{Get(KOVAAPI_GetSyncStatus)};
    log << ", pattern " << int{Get(KOVAAPI_GetInputPattern)} << '\n' << Packed(Transfers()) << '\n';
    for (const auto& [name, input, shown] : {std::tuple{"input", sim::VideoInput{.measureReads = 2}, 0},
                                             {"no sync", sim::VideoInput{.syncStatus = 2}, 0},
                                             {"pattern", sim::VideoInput{}, 4}}) {
        sim::SetVideoInput(input);
        sim::KovaRegister(0x4C0) = std::uint16_t(shown);
        log << name << ": frequency " << HFrequency() << '\n' << Packed(Transfers()) << '\n';
        log << name << ": lines " << Lines() << '\n' << Packed(Transfers()) << '\n';
    }
    sim::KovaRegister(0x4C0) = 0;
    for (const std::uint16_t result : Words{0x8106, 0x0106, 0x8FFF, 0xFFFF, 0xFFFE}) { // bit 15: the result is valid
        sim::SetVideoInput({.hFrequency = result, .linesField1 = result, .linesField2 = 0xF001});
        log << result << ": frequency " << HFrequency() << ", lines " << Lines();
        sim::SetVideoInput({.linesField1 = 0x8106, .linesField2 = result});
        log << ", of the second field " << Lines() << '\n';
    }
}

TEST_F(KovaStatus, EndlessMeasurementIsGivenUp) {
    for (const auto& [reads, lines] : {std::pair{4999U, 525}, {5000U, 0xFFFF}}) {
        sim::SetVideoInput({.measureReads = reads});
        EXPECT_EQ(Lines(), lines);
        const std::string transfers = Transfers();
        EXPECT_EQ(std::ranges::count(transfers, '\n'), 2 + 2 * 5000 + (lines == 525 ? 4 : 0) + 2);
        EXPECT_TRUE(transfers.ends_with("kova w 04d0 0000\nkova w 04c4 0001\n"));
    }
    // If no request succeeds, every read gives all ones.
    sim::FailEvery(1);
    Quietly([] { EXPECT_EQ(std::tuple(HFrequency(), Lines()), std::tuple(0xFFFF, 0xFFFF)); });
}

TEST_F(KovaStatus, InputPatternReplacesAndRestoresInput) {
    struct Case {
        SrcVideoInfo src;
        unsigned pattern;
    };
    for (Case c : {Case{{.mode = MUX656_10, .flags = 0x8003, .stActive = {704, 480}}, 3},
                   Case{{.mode = MUX656_8_B, .flags = 0x000F, .stActive = {1024, 768}}, 7},
                   Case{{.mode = RGB444_8, .flags = 0x8004, .stActive = {1920, 1080}}, 1},
                   Case{{.mode = SEP422_10, .flags = 0x800B, .stActive = {1023, 480}}, 0xFFFF},
                   Case{{.mode = SEP422_10, .flags = 0x8003}, 0}}) {
        for (const std::uint16_t fill : Words{0, 0xFFFF}) {
            Fill(fill);
            Note(KOVAAPI_SetInputPattern(&c.src, std::uint16_t(c.pattern)), "mode", c.src.mode, "pattern", c.pattern);
        }
    }
}

TEST_F(KovaStatus, DisplaySwitchesWriteTheirBits) {
    Note(KOVAAPI_SetOutputPattern(0xFF), "pattern");
    Note(KOVAAPI_EnableDarkScreen(2), "dark");
    Note(KOVAAPI_SetOutputPattern(0), "no pattern");
    for (const std::uint8_t on : std::array<std::uint8_t, 2>{0, 4}) {
        Note(KOVAAPI_EnableMainFreeze(on), "freeze", on);
        Note(KOVAAPI_DisplayOutWindow(on), "window", on);
    }
    Note(KOVAAPI_PowerSaveEnable(1), "power save is exactly 1");
    Note(KOVAAPI_PowerSaveEnable(2), "power save is not 2");
}

} // namespace
