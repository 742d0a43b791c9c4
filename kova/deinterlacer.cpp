#include "kova/deinterlacer.h"

#include "kova/deinterlacer_tables.h"
#include "kova/field.h"
#include "kova/state.h"

#include <bit>

using namespace kova;

namespace {

constexpr std::uint16_t kFirstRegister = 0x500;

/// The greatest width for which the driver does not force high-definition mode, by precision of the frame memory.
constexpr std::uint16_t kWidest8Bit = 1024;
constexpr std::uint16_t kWidest10Bit = 768;

/// The state and the choices that are set together with KOVA_DeintFactor. On: noise reduction, CCS, border detection,
/// fast motion, and noise reduction for every use. Chroma mode 1, current motion threshold 16, current motion select 2.
/// The film mode is 3, although KOVA_DeintFactor has film code 0 for 0x50B. The next video path update writes the code
/// of mode 3, unless it forces high-definition mode.
constexpr DeintState kDefaults{.state = DEINT_NR_ON, .v2tab = 0, .choices = 0x107F, .nrUse = 0xBF};

/// The driver overrides a choice of the caller while any of these state bits is set (whileSet true), or while all of
/// them are clear (whileSet false).
struct Override {
    std::uint8_t bits;
    bool whileSet;
};

/// A setting that the driver may override. The choice of the caller is kept meanwhile.
template <typename Word>
struct Guarded {
    Word DeintState::*keptIn;
    Word bits; // the bits of the member keptIn that hold the choice
    Override override;
    std::uint16_t forced;
    Field field;
};
using InWord = Guarded<std::uint16_t>;
using InByte = Guarded<std::uint8_t>;

constexpr auto kChoices = &DeintState::choices;
constexpr auto kV2TABChoice = &DeintState::v2tab;
constexpr auto kNRUses = &DeintState::nrUse;

constexpr Override kHd{.bits = DEINT_HD_FORCED, .whileSet = true};
constexpr Override kHdOrDecimating{.bits = DEINT_HD_FORCED | DEINT_DECIMATING, .whileSet = true};
constexpr Override kV2TABForced{.bits = DEINT_V2TAB_FORCED, .whileSet = true};
constexpr Override kNROff{.bits = DEINT_NR_ON, .whileSet = false};

// clang-format off
//                                kept in       bits                           override        value  field
constexpr InWord kCMode          {kChoices,     DEINT_CHOICE_C_MODE,           kHd,               1, {0x528,  6, 2}};
constexpr InWord kCurMotionThres {kChoices,     DEINT_CHOICE_CUR_MOTION_THRES, kHd,             255, {0x500,  0, 8}};
constexpr InWord kFastMotion     {kChoices,     DEINT_CHOICE_FAST_MOTION,      kHd,               0, {0x503, 15, 1}};
constexpr InWord kBorder         {kChoices,     DEINT_CHOICE_BORDER,           kHd,               0, {0x508,  3, 1}};
constexpr InWord kFilmMode       {kChoices,     DEINT_CHOICE_FILM_MODE,        kHd,               0, {0x50B, 12, 3}};
constexpr InWord kCCS            {kChoices,     DEINT_CHOICE_CCS,              kHdOrDecimating,   0, {0x52A,  6, 1}};
constexpr InWord kNR             {kChoices,     DEINT_CHOICE_NR,               kHdOrDecimating,   0, {0x52A,  7, 1}};
constexpr InByte kV2TAB          {kV2TABChoice, 1,                             kV2TABForced,      1, {0x53D,  7, 1}};
constexpr InByte kCurMotionNRSel {kNRUses,      DEINT_NR_CUR_MOTION_SEL,       kNROff,            3, {0x500, 12, 2}};
constexpr InByte kCurMotionNRUse {kNRUses,      DEINT_NR_CUR_MOTION,           kNROff,            0, {0x524, 15, 1}};
constexpr InByte kNextMotionUse  {kNRUses,      DEINT_NR_NEXT_MOTION,          kNROff,            0, {0x529,  7, 1}};
constexpr InByte kFastHistoryUse {kNRUses,      DEINT_NR_FAST_HISTORY,         kNROff,            0, {0x53D,  1, 1}};
constexpr InByte kBorderUse      {kNRUses,      DEINT_NR_BORDER,               kNROff,            0, {0x53D,  3, 1}};
constexpr InByte kSlowMotionUse  {kNRUses,      DEINT_NR_SLOW_MOTION,          kNROff,            0, {0x524, 14, 1}};
constexpr InByte kStillMotionUse {kNRUses,      DEINT_NR_STILL_MOTION,         kNROff,            0, {0x524, 13, 1}};

constexpr Field kCurMotionNRUseB          {0x513,  4,  1}; // second field of kCurMotionNRUse

constexpr Field kYMode                    {0x500, 14,  2};
constexpr Field kYModeDouble              {0x402, 15,  1};
constexpr Field kHDMode                   {0x529, 11,  1};
// Current motion
constexpr Field kCurMotionMedian          {0x500, 10,  1};
constexpr Field kCurMotionExpander        {0x500,  8,  2};
constexpr Field kCurPdMotion              {0x527,  7,  1};
constexpr Field kCurPdMotionThres         {0x527,  0,  7};
// Next motion
constexpr Field kNextMotion               {0x501, 13,  1};
constexpr Field kNextMotionNRSel          {0x501, 14,  2};
constexpr Field kNextMotionMedian         {0x501, 11,  1};
constexpr Field kNextMotionExpander       {0x526, 12,  2};
constexpr Field kNextMotionThres          {0x501,  0,  8};
// Fast, slow and still motion, borders, edges
constexpr Field kFastUpdateMedian         {0x53D,  2,  1};
constexpr Field kFastMotionMedian         {0x527, 12,  1};
constexpr Field kFastHistoryThres         {0x523,  0,  3};
constexpr Field kSlowMotionThres          {0x502,  0,  8};
constexpr Field kBorderThres              {0x520,  0,  7};
constexpr Field kStillMotionThres         {0x512,  0, 12};
constexpr Field kStillFieldCntThres       {0x50F,  0,  6};
constexpr Field kEdgeMode                 {0x504,  8,  3};
constexpr Field kEdge2nd                  {0x504, 11,  1};
// Chroma and CCS
constexpr Field kChromaMotionThres        {0x528,  8,  8};
constexpr Field kChromaCurMotionExpander  {0x527, 10,  2};
constexpr Field kChromaNextMotionExpander {0x527,  8,  2};
constexpr Field kCCSMedian                {0x532, 15,  1};
// Film
constexpr Field kFilm32FieldCntThres      {0x50B,  0,  6};
constexpr Field kFilm32MotionThres        {0x50A,  0, 12};
constexpr Field kFilm22FieldCntThres      {0x50F,  8,  6};
constexpr Field kFilm22MotionThres        {0x536,  0,  8};
constexpr Field kBadEdit                  {0x50B, 15,  1};
constexpr Field kBadEditMotionThres       {0x521,  8,  8};
// Captions
constexpr Field kCaptionYMode             {0x516,  0,  2};
constexpr Field kCaptionCMode             {0x528,  0,  2};
constexpr Field kCaptionMotionThres       {0x517,  6, 10};
constexpr Field kCaptionLineCntThres      {0x50E,  0,  8};
constexpr Field kCaptionLineCntThresB     {0x538,  0,  8};
constexpr Field kCaptionVposiThres        {0x518,  0, 10};
// Noise reduction
constexpr Field kNRAdapt                  {0x53D,  0,  1};
constexpr Field kNRConditionLevel         {0x53C,  8,  8};
constexpr Field kNRFactorLevel            {0x52A,  0,  6};
constexpr Field kNRFactorLevelB           {0x535,  0,  6};
// High definition
constexpr Field kHD3DAdp                  {0x53E, 14,  1};
// clang-format on

/// The code that is written to the chip for each film mode.
constexpr std::array<std::uint16_t, 4> kFilmCodes{0, 5, 6, 4};

bool IsInForce(const Override& override) { return ((stKOVADeint.state & override.bits) != 0) == override.whileSet; }

/// The value to write. While the override is in force, this is the override value. Otherwise it is the value of the
/// caller, which is then also stored.
template <typename Word>
std::uint16_t Resolve(const Guarded<Word>& setting, std::uint16_t value) {
    if (IsInForce(setting.override)) {
        return setting.forced;
    }
    Word& kept = stKOVADeint.*setting.keptIn;
    kept = static_cast<Word>((kept & ~setting.bits) | value << std::countr_zero(setting.bits));
    return value;
}

template <typename Word>
std::uint16_t Kept(const Guarded<Word>& setting) {
    return static_cast<std::uint16_t>((stKOVADeint.*setting.keptIn & setting.bits) >> std::countr_zero(setting.bits));
}

template <typename Word>
std::uint8_t Apply(const Guarded<Word>& setting, std::uint16_t value) {
    return SetAndUpdate(setting.field, Resolve(setting, value));
}

/// Writes the stored choice again, or the override value.
template <typename Word>
std::uint8_t Reapply(const Guarded<Word>& setting) {
    return Apply(setting, Kept(setting));
}

/// Writes a setting that the chip has in two fields.
std::uint8_t SetAndUpdate(Field first, Field second, std::uint16_t value) {
    return AsResult(Write(first, value) || Write(second, value) || LocalUpdate());
}

} // namespace

// ---- The whole deinterlacer ----

std::uint8_t KOVAAPI_LoadDeintData() {
    if (Write(kFirstRegister, KOVA_DeintFactor)) {
        return KOVA_I2C_ERROR;
    }
    stKOVADeint = kDefaults;
    return LocalUpdate();
}

std::uint8_t KOVAAPI_SetDeinterMode(const SrcVideoInfo* src) {
    const bool is8Bit = (src->flags & VIDFLAG_8BIT) != 0;
    const bool interlaced = (src->flags & VIDFLAG_PROGRESSIVE) == 0;

    // High-definition mode must be set first, because it overrides some of the choices below.
    const bool hd = stKOVADstWIN.w > (is8Bit ? kWidest8Bit : kWidest10Bit);
    if (KOVAAPI_EnableDeintHDMode(hd) || KOVAAPI_EnableDeintHD3DAdp(hd) || Reapply(kCMode) || Reapply(kCurMotionThres)
        || Reapply(kFastMotion) || Reapply(kBorder) || KOVAAPI_SetDeintFilmMode(Kept(kFilmMode)) || Reapply(kCCS)
        || KOVAAPI_EnableDeintNR(Kept(kNR) != 0)) {
        return KOVA_I2C_ERROR;
    }
    SetBits(stKOVADeint.state, DEINT_V2TAB_FORCED, interlaced && ShrinksBelowHalf());

    // The caption position threshold is three quarters of the height.
    const unsigned captionLine = src->stActive.h * 3U >> 2U;
    return AsResult(Reapply(kV2TAB) || KOVAAPI_SetDeintCaptionVposiThres(static_cast<std::uint16_t>(captionLine)));
}

std::uint8_t KOVAAPI_SetDeintYMode(std::uint16_t value) {
    return AsResult(Write(kYMode, value) || Write(kYModeDouble, value == 2) || LocalUpdate());
}

std::uint8_t KOVAAPI_SetDeintFastMotion(std::uint16_t value) {
    return AsResult(KOVAAPI_EnableDeintFastMotion(value == 2) || KOVAAPI_EnableDeintNextMotion(value != 0));
}

std::uint8_t KOVAAPI_SetDeintPDCurMotionThres(std::uint16_t value) {
    return AsResult(Write(kCurPdMotionThres, value) || Write(kCurPdMotion, value != 40) || LocalUpdate());
}

std::uint8_t KOVAAPI_EnableDeintHDMode(std::uint8_t on) {
    SetBits(stKOVADeint.state, DEINT_HD_FORCED, on != 0);
    return SetAndUpdate(kHDMode, on != 0);
}

// ---- Choices that the driver may override ----

std::uint8_t KOVAAPI_SetDeintCMode(std::uint16_t value) { return Apply(kCMode, value); }
std::uint8_t KOVAAPI_SetDeintCurMotionThres(std::uint16_t value) { return Apply(kCurMotionThres, value); }
std::uint8_t KOVAAPI_EnableDeintFastMotion(std::uint8_t on) { return Apply(kFastMotion, on != 0); }
std::uint8_t KOVAAPI_EnableDeintBorder(std::uint8_t on) { return Apply(kBorder, on != 0); }
std::uint8_t KOVAAPI_EnableDeintCCS(std::uint8_t on) { return Apply(kCCS, on != 0); }
std::uint8_t KOVAAPI_EnableDeintV2TAB(std::uint8_t on) { return Apply(kV2TAB, on != 0); }

std::uint8_t KOVAAPI_SetDeintFilmMode(std::uint16_t value) {
    const std::uint16_t mode = Resolve(kFilmMode, value);
    return SetAndUpdate(kFilmMode.field, mode < kFilmCodes.size() ? kFilmCodes[mode] : 0);
}

std::uint8_t KOVAAPI_EnableDeintNR(std::uint8_t on) {
    const bool effective = Resolve(kNR, on != 0) != 0;
    SetBits(stKOVADeint.state, DEINT_NR_ON, effective);
    return AsResult(Write(kNR.field, effective) || Reapply(kCurMotionNRSel)
                    || KOVAAPI_EnableDeintCurMotionNRUse(Kept(kCurMotionNRUse) != 0) || Reapply(kNextMotionUse)
                    || Reapply(kFastHistoryUse) || Reapply(kBorderUse) || Reapply(kSlowMotionUse)
                    || Reapply(kStillMotionUse) || LocalUpdate());
}

std::uint8_t KOVAAPI_EnableDeintCurMotionNRUse(std::uint8_t on) {
    return SetAndUpdate(kCurMotionNRUse.field, kCurMotionNRUseB, Resolve(kCurMotionNRUse, on != 0));
}

std::uint8_t KOVAAPI_SetDeintCurMotionNRSel(std::uint16_t value) { return Apply(kCurMotionNRSel, value); }
std::uint8_t KOVAAPI_EnableNextMotionNRUse(std::uint8_t on) { return Apply(kNextMotionUse, on != 0); }
std::uint8_t KOVAAPI_EnableDeintFastHistoryUse(std::uint8_t on) { return Apply(kFastHistoryUse, on != 0); }
std::uint8_t KOVAAPI_EnableDeintBorderNRUse(std::uint8_t on) { return Apply(kBorderUse, on != 0); }
std::uint8_t KOVAAPI_EnableDeintSlowMotionNRUse(std::uint8_t on) { return Apply(kSlowMotionUse, on != 0); }
std::uint8_t KOVAAPI_EnableDeintStillMotionNRUse(std::uint8_t on) { return Apply(kStillMotionUse, on != 0); }

// ---- Current motion ----

std::uint8_t KOVAAPI_EnableDeintCurMotionMedian(std::uint8_t on) { return SetAndUpdate(kCurMotionMedian, on != 0); }
std::uint8_t KOVAAPI_SetDeintCurMotionExpander(std::uint16_t value) { return SetAndUpdate(kCurMotionExpander, value); }
std::uint8_t KOVAAPI_EnableDeintCurPdMotion(std::uint8_t on) { return SetAndUpdate(kCurPdMotion, on != 0); }
std::uint8_t KOVAAPI_SetDeintCurPdMotionThres(std::uint16_t value) { return SetAndUpdate(kCurPdMotionThres, value); }

// ---- Next motion ----

std::uint8_t KOVAAPI_EnableDeintNextMotion(std::uint8_t on) { return SetAndUpdate(kNextMotion, on != 0); }
std::uint8_t KOVAAPI_SetDeintNextMotionNRSel(std::uint16_t value) { return SetAndUpdate(kNextMotionNRSel, value); }
std::uint8_t KOVAAPI_EnableDeintNextMotionMedian(std::uint8_t on) { return SetAndUpdate(kNextMotionMedian, on != 0); }
std::uint8_t KOVAAPI_SetDeintNextMotionExpander(std::uint16_t value) {
    return SetAndUpdate(kNextMotionExpander, value);
}
std::uint8_t KOVAAPI_SetDeintNextMotionThres(std::uint16_t value) { return SetAndUpdate(kNextMotionThres, value); }

// ---- Fast, slow and still motion, borders, edges ----

std::uint8_t KOVAAPI_EnableDeintFastUpdateMedian(std::uint8_t on) { return SetAndUpdate(kFastUpdateMedian, on != 0); }
std::uint8_t KOVAAPI_EnableDeintFastMotionMedian(std::uint8_t on) { return SetAndUpdate(kFastMotionMedian, on != 0); }
std::uint8_t KOVAAPI_SetDeintFastHistoryThres(std::uint16_t value) { return SetAndUpdate(kFastHistoryThres, value); }
std::uint8_t KOVAAPI_SetDeintSlowMotionThres(std::uint16_t value) { return SetAndUpdate(kSlowMotionThres, value); }
std::uint8_t KOVAAPI_SetDeintBorderThres(std::uint16_t value) { return SetAndUpdate(kBorderThres, value); }
std::uint8_t KOVAAPI_SetDeintStillMotionThres(std::uint16_t value) { return SetAndUpdate(kStillMotionThres, value); }
std::uint8_t KOVAAPI_SetDeintStillFieldCntThres(std::uint16_t value) {
    return SetAndUpdate(kStillFieldCntThres, value);
}
std::uint8_t KOVAAPI_SetDeintEdgeMode(std::uint16_t value) { return SetAndUpdate(kEdgeMode, value); }
std::uint8_t KOVAAPI_EnableDeintEdge2nd(std::uint8_t on) { return SetAndUpdate(kEdge2nd, on != 0); }

// ---- Chroma and CCS ----

std::uint8_t KOVAAPI_SetDeintChromaMotionThres(std::uint16_t value) { return SetAndUpdate(kChromaMotionThres, value); }
std::uint8_t KOVAAPI_SetDeintChromaCurMotionExpander(std::uint16_t value) {
    return SetAndUpdate(kChromaCurMotionExpander, value);
}
std::uint8_t KOVAAPI_SetDeintChromaNextMotionExpander(std::uint16_t value) {
    return SetAndUpdate(kChromaNextMotionExpander, value);
}
std::uint8_t KOVAAPI_EnableDeintCCSMedian(std::uint8_t on) { return SetAndUpdate(kCCSMedian, on != 0); }

// ---- Film ----

std::uint8_t KOVAAPI_SetDeintFilm32FieldCntThres(std::uint16_t value) {
    return SetAndUpdate(kFilm32FieldCntThres, value);
}
std::uint8_t KOVAAPI_SetDeintFilm32MotionThres(std::uint16_t value) { return SetAndUpdate(kFilm32MotionThres, value); }
std::uint8_t KOVAAPI_SetDeintFilm22FieldCntThres(std::uint16_t value) {
    return SetAndUpdate(kFilm22FieldCntThres, value);
}
std::uint8_t KOVAAPI_SetDeintFilm22MotionThres(std::uint16_t value) { return SetAndUpdate(kFilm22MotionThres, value); }
std::uint8_t KOVAAPI_EnableDeintBadEdit(std::uint8_t on) { return SetAndUpdate(kBadEdit, on != 0); }
std::uint8_t KOVAAPI_SetDeintBadEditMotionThres(std::uint16_t value) {
    return SetAndUpdate(kBadEditMotionThres, value);
}

// ---- Captions ----

std::uint8_t KOVAAPI_SetDeintCaptionYMode(std::uint16_t value) { return SetAndUpdate(kCaptionYMode, value); }
std::uint8_t KOVAAPI_SetDeintCaptionCMode(std::uint16_t value) { return SetAndUpdate(kCaptionCMode, value); }
std::uint8_t KOVAAPI_SetDeintCaptionMotionThres(std::uint16_t value) {
    return SetAndUpdate(kCaptionMotionThres, value);
}
std::uint8_t KOVAAPI_SetDeintCaptionLineCntThres(std::uint16_t value) {
    return SetAndUpdate(kCaptionLineCntThres, kCaptionLineCntThresB, value);
}
std::uint8_t KOVAAPI_SetDeintCaptionVposiThres(std::uint16_t value) { return SetAndUpdate(kCaptionVposiThres, value); }

// ---- Noise reduction ----

std::uint8_t KOVAAPI_EnableDeintNRAdapt(std::uint8_t on) { return SetAndUpdate(kNRAdapt, on != 0); }
std::uint8_t KOVAAPI_SetDeintNRConditionLevel(std::uint16_t value) { return SetAndUpdate(kNRConditionLevel, value); }
std::uint8_t KOVAAPI_SetDeintNRFactorLevel(std::uint16_t value) {
    return SetAndUpdate(kNRFactorLevel, kNRFactorLevelB, value);
}

// ---- High definition ----

std::uint8_t KOVAAPI_EnableDeintHD3DAdp(std::uint8_t on) { return SetAndUpdate(kHD3DAdp, on != 0); }
