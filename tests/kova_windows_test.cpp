#include "tests/kova_driver.h"

namespace {

class KovaWindows : public KovaDriver {
protected:
    SrcVideoInfo src{.flags = VIDFLAG_PORT_A, .stActive = {704, 480}};
    OutVideoInfo out{.stActive = {1280, 1024}};
};

TEST_F(KovaWindows, CallersWindowsReplaceWholePicture) {
    Note(KOVAAPI_SetWindowSrcVideo(&src), "whole picture");
    Note(KOVAAPI_SetHDecimateVideo(&src), "decimation");
    Note(KOVAAPI_SetWindowOutVideo(&out), "whole output");
    src.flags = 0;
    const VideoWindow clip{640, 400, 0x1FF, 0x7F}, view{1000, 700, 4, 5}, zoom{320, 200, 6, 7};
    Note(KOVAAPI_SetWindowSrcCLIP(&src, &clip), "clip on port B");
    Note(KOVAAPI_SetWindowOutVIEW(&out, &view), "view");
    Note(KOVAAPI_SetWindowOutZOOM(&out, &zoom), "zoom");
    VideoWindow back{1, 1, 1, 1};
    KOVAAPI_GetWindowHDECI(&back);
    log << "read back: " << back << '\n';
}

TEST_F(KovaWindows, DestinationFollowsInputClipAndView) {
    struct Case {
        std::uint16_t flags, w, h;
        VideoWindow clip, view;
    };
    constexpr std::uint16_t k8Bit = VIDFLAG_8BIT, kProgressive = VIDFLAG_8BIT | VIDFLAG_PROGRESSIVE;
    // clang-format off
    for (const Case& c : {Case{0, 704, 487, {}, {}}, Case{k8Bit, 704, 480, {}, {}},
                          Case{k8Bit, 1024, 480, {}, {}},
                          Case{k8Bit, 1032, 480, {}, {}},
                          Case{kProgressive, 1280, 720, {}, {}},
                          Case{kProgressive, 1920, 1080, {1281, 99}, {}}, // a clip is not rounded
                          Case{kProgressive, 1920, 1080, {}, {1280, 720}},
                          Case{kProgressive, 1280, 720, {}, {720, 480}},
                          Case{0, 1920, 1080, {1025, 99}, {}},
                          Case{0, 1024, 480, {}, {}},
                          Case{0, 704, 480, {600, 0}, {0, 100}},       // width or height 0: not used
                          Case{0, 704, 480, {0, 100}, {100, 0}}}) {
        // clang-format on
        for (const std::uint8_t state : {DEINT_NR_ON, DEINT_DECIMATING}) {
            stKOVADeint.state = state;
            src = {.stClip = c.clip, .flags = c.flags, .stActive = {c.w, c.h}};
            out.stView = c.view;
            out.stZoom = state == DEINT_NR_ON ? VideoWindow{100, 0} : VideoWindow{0, 100}; // not used either
            KOVAAPI_SetWindowSrcVideo(&src);
            KOVAAPI_SetHDecimateVideo(&src);
            KOVAAPI_SetWindowOutVideo(&out);
            log << src.stActive << " destination " << stKOVADstWIN << " zoom " << stKOVAZoomWIN << " state "
                << unsigned{stKOVADeint.state} << '\n';
        }
    }
}

TEST_F(KovaWindows, ScalerSetsLoadOnlyWhenNeeded) {
    KOVAPLLClock = 2;
    stKOVADstWIN.h = 481; // A view of less than 481 / 2 = 240 lines needs the other set.
    for (const unsigned viewH : {240U, 239U}) {
        for (const char* const time : {"first", "again"}) {
            stKOVAViewWIN.h = static_cast<std::uint16_t>(viewH);
            Note(KOVAAPI_SetMFCFilterCoef(&out), time, viewH, "lines, set", KOVAMFCCoef, "clock", KOVAPLLClock);
        }
    }
}

TEST_F(KovaWindows, CallersScalerTablesAreLoaded) {
    std::array<MfcTable, 4> tables{};
    for (std::size_t i = 0; i < tables.size(); ++i) {
        tables[i][0] = {-1, static_cast<std::int16_t>(i + 1)};
        tables[i][63] = {3, -4};
    }
    // 2 lines are shown at less than half their height. In this case the vertical filters use the built-in table.
    for (const std::uint16_t lines : Words{2, 0}) {
        stKOVADstWIN.h = lines;
        Note(KOVAAPI_SetMFCHYFilterCoef(&out, tables.data()), "horizontally of", lines);
        Note(KOVAAPI_SetMFCVYFilterCoef(&out, &tables[2]), "vertically of", lines);
    }
    KOVAAPI_SetMFCHCFilterCoef(&out, &tables[1]);
    KOVAAPI_SetMFCVCFilterCoef(&out, &tables[3]);
    Journal();
    EXPECT_EQ(std::tuple(out.pMfcHY, out.pMfcHC, out.pMfcVY, out.pMfcVC),
              std::tuple(tables.data(), &tables[1], &tables[2], &tables[3]));
    stKOVADstWIN.h = 0; // not shown at less than half its height, so all four tables are used
    Note(KOVAAPI_SetMFCFilterCoef(&out), "all four tables of the record");
}

TEST_F(KovaWindows, MemoryPrecisionAndConfigurationAreWritten) {
    for (const std::uint16_t width : Words{768, 769}) {
        stKOVADstWIN.w = width;
        std::string last;
        for (out.frmt = 0; out.frmt < VIDOUT_COUNT; ++out.frmt) {
            src.flags = VIDFLAG_PORT_A;
            EXPECT_EQ(KOVAAPI_SetMemPrecision(&src, &out), 0);
            if (const std::string wrote = Packed(); wrote != last) {
                last = wrote;
                Note(0, width, "wide, from format", out.frmt, "on", src.flags, wrote.c_str());
            }
        }
    }
    for (const MemoryConfig& mem : {MemoryConfig{0, 1, 0}, MemoryConfig{2, 2, 1}, MemoryConfig{1, 4, 7}}) {
        Fill(0xFFFF, 0x012, 0x455);
        Note(KOVAAPI_SetMemory(&mem), "select", mem.select, "flags", mem.flags, "mode", mem.mode);
    }
}

} // namespace
