#include "kova/scaler.h"

#include "kova/output_port.h"
#include "kova/scaler_tables.h"
#include "kova/shared_regs.h"
#include "kova/state.h"

#include <array>

using namespace kova;

namespace {

constexpr std::uint16_t kCoefData = 0x590; // four words
constexpr std::uint16_t kCoefStrobe = 0x594;
constexpr unsigned kStrobe = 0x80;
constexpr unsigned kSelectShift = 8;

/// Source of the video clock while the coefficient memory of the scaler is loaded.
constexpr std::uint16_t kLoadClock = 1;

enum FilterSelect : std::uint8_t { kHorizontalLuma, kHorizontalChroma, kVerticalLuma, kVerticalChroma };

/// Values of KOVAMFCCoef.
enum CoefSet : std::uint8_t { kNormalSet = 1, kShrinkingSet = 2 };

const MfcTable& OrBuiltIn(const MfcTable* table) { return table != nullptr ? *table : KOVA_MFCFilter_Spline_1_00; }

const MfcTable& VerticalTable(const MfcTable* table) {
    if (ShrinksBelowHalf()) {
        return KOVA_MFCFilter_Bilinear;
    }
    return OrBuiltIn(table);
}

std::uint8_t Load(FilterSelect select, const MfcTable& table) {
    for (unsigned i = 0; i < table.size(); ++i) {
        const std::array<std::uint16_t, 4> data{static_cast<std::uint16_t>(table[i][0]),
                                                static_cast<std::uint16_t>(table[i][1]), 0, 0};
        const unsigned strobe = i | kStrobe | unsigned{select} << kSelectShift;
        if (Write(kCoefData, data) || KOVA_RegWrite(kCoefStrobe, static_cast<std::uint16_t>(strobe))) {
            return KOVA_I2C_ERROR;
        }
    }
    return KOVA_NO_ERROR;
}

} // namespace

std::uint8_t KOVAAPI_SetMFCHYFilterCoef(OutVideoInfo* out, const MfcTable* table) {
    out->pMfcHY = table;
    return Load(kHorizontalLuma, OrBuiltIn(table));
}

std::uint8_t KOVAAPI_SetMFCHCFilterCoef(OutVideoInfo* out, const MfcTable* table) {
    out->pMfcHC = table;
    return Load(kHorizontalChroma, OrBuiltIn(table));
}

std::uint8_t KOVAAPI_SetMFCVYFilterCoef(OutVideoInfo* out, const MfcTable* table) {
    out->pMfcVY = table;
    return Load(kVerticalLuma, VerticalTable(table));
}

std::uint8_t KOVAAPI_SetMFCVCFilterCoef(OutVideoInfo* out, const MfcTable* table) {
    out->pMfcVC = table;
    return Load(kVerticalChroma, VerticalTable(table));
}

std::uint8_t KOVAAPI_SetMFCFilterCoef(OutVideoInfo* out) {
    const CoefSet needed = ShrinksBelowHalf() ? kShrinkingSet : kNormalSet;
    if (needed == KOVAMFCCoef) {
        return KOVA_NO_ERROR;
    }
    const std::uint16_t clock = KOVAPLLClock;
    if (Write(kVideoPllHold, 1) || KOVAAPI_SetVCLKPLLSource(kLoadClock) || KOVAAPI_SetMFCHYFilterCoef(out, out->pMfcHY)
        || KOVAAPI_SetMFCHCFilterCoef(out, out->pMfcHC) || KOVAAPI_SetMFCVYFilterCoef(out, out->pMfcVY)
        || KOVAAPI_SetMFCVCFilterCoef(out, out->pMfcVC) || KOVAAPI_SetVCLKPLLSource(clock) || Write(kVideoPllHold, 0)) {
        return KOVA_I2C_ERROR;
    }
    KOVAMFCCoef = needed;
    return KOVA_NO_ERROR;
}
