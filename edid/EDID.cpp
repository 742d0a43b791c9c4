// The way through a sink's EDID, and the accessors of what was found.

#include "edid/EDIDParse.h"

#include <algorithm>
#include <cstdio>

using namespace edid;

std::uint8_t gbExtensionBlockExist = 0;
std::uint8_t gbNativeVIC = 0;
std::uint8_t CEAOnFisrtPage = 0;

namespace {

// Result of a parse that ends in another segment than its own.
constexpr std::uint8_t kSegmentLost = MDDC_ERROR_BIT6;

// What the report calls this file, whatever the compiler does.
constexpr const char* kFile = "EDID.cpp";

// A DVI sink: its preferred timing is all there is to know.
std::uint8_t ParseWithoutExtension(EDIDParseResult* result) {
    result->ErrCode = EDID_ERR_NO_EXTENSION;
    const std::uint8_t transfer = ParseTimingDescriptors(&result->CRC16);
    gbExtensionBlockExist = 0;
    return transfer;
}

// Block 1 is taken for a CEA block whatever its tag: the HDMI signature decides.
std::uint8_t ParseOneExtension(EDIDParseResult* result) {
    std::uint8_t transfer = NewCheckHDMISignature(&result->ErrCode, &result->CRC16);
    if (result->ErrCode != 0) {
        return ParseTimingDescriptors(&result->CRC16);
    }
    if (transfer != 0) {
        return transfer;
    }
    result->OutMode = EDID_OUTMODE_HDMI;
    transfer = Parse861BExtension(&result->CRC16);
    if (transfer == 0) {
        SelectSegment(0);
    }
    return transfer;
}

// The first block of a segment, when it is a CEA block; the second one is only checked then.
std::uint8_t ParseSegment(std::uint8_t segment, EDIDParseResult* result) {
    SelectSegment(segment);
    std::uint8_t isCEA = 0;
    std::uint8_t transfer = CheckFor861BExtensionOffset(&isCEA, 0, &result->CRC16);
    if (transfer != 0 || isCEA == 0) {
        return transfer;
    }
    transfer = CheckCRCof1stEDIDBlock(&result->ErrCode, &result->CRC16);
    if (Ends(transfer, result->ErrCode)) {
        return transfer;
    }
    CEAOnFisrtPage = 1;
    transfer = NewCheckHDMISignature(&result->ErrCode, &result->CRC16);
    if (Ends(transfer, result->ErrCode)) {
        return transfer;
    }
    result->OutMode = EDID_OUTMODE_HDMI;
    transfer = Parse861BExtension(&result->CRC16);
    if (transfer != 0) {
        return transfer;
    }
    CEAOnFisrtPage = 0;
    return CheckCRCof2ndEDIDBlock(&result->ErrCode, &result->CRC16);
}

// One pass more than extensions; the number wraps, so that the last of 256 passes comes to segment 0.
std::uint8_t WalkSegments(std::uint8_t extensions, EDIDParseResult* result) {
    std::uint8_t segment = 1;
    for (unsigned pass = 0; pass < extensions + 1U; ++pass) {
        const std::uint8_t transfer = ParseSegment(segment, result);
        if (Ends(transfer, result->ErrCode) || result->OutMode == EDID_OUTMODE_HDMI) {
            return transfer;
        }
        ++segment;
    }
    return 0;
}

std::uint8_t ParseSeveralExtensions(std::uint8_t extensions, EDIDParseResult* result) {
    std::uint8_t transfer = GetBlockMapTAG(&result->ErrCode, &result->CRC16);
    if (!Ends(transfer, result->ErrCode)) {
        transfer = WalkSegments(extensions, result);
    }
    SelectSegment(0);
    return transfer;
}

std::uint8_t ParseSink(EDIDParseResult* result) {
    *result = {};
    std::uint8_t transfer = BasicParse(&result->ErrCode, &result->CRC16);
    if (Ends(transfer, result->ErrCode)) {
        return transfer;
    }
    std::uint8_t extensions = 0;
    transfer = CheckFor861BExtension(&extensions, &result->CRC16);
    if (transfer != 0) {
        return transfer;
    }
    if (extensions == 0) {
        return ParseWithoutExtension(result);
    }
    gbExtensionBlockExist = 1;
    std::fprintf(stderr, " \n\r[Read EDID] gbExtensionBlockExist = %d", gbExtensionBlockExist);
    transfer = CheckCRCof2ndEDIDBlock(&result->ErrCode, &result->CRC16);
    if (Ends(transfer, result->ErrCode)) {
        return transfer;
    }
    return extensions == 1 ? ParseOneExtension(result) : ParseSeveralExtensions(extensions, result);
}

} // namespace

std::uint8_t ParseEDID(EDIDParseResult* result) {
    CEAOnFisrtPage = 0;
    const std::uint8_t transfer = ParseSink(result);
    if (TmpD.segment == 0) {
        return transfer;
    }
    // A failed read of the segment register shows 0xFF, and the next request then selects that segment. What was read
    // there is not the base block, and no later parse would find that again.
    SelectSegment(0);
    return transfer != 0 ? transfer : kSegmentLost;
}

std::uint8_t ReturnCECPhyAddr(std::uint16_t* address) {
    const bool known = gbExtensionBlockExist != 0 && gbVendorSpecificBlockExist != 0;
    *address = known ? gwCECPhysicalAddr : 0;
    return known ? 1 : 0;
}

void LoadSupportHDMIVideoOut(std::uint8_t* destination, std::uint8_t* count) {
    *count = EdidVFmtsCount;
    std::fprintf(stderr, "\n[%s(%s):%d] EdidVFmtsCount = %d \n", kFile, __func__, __LINE__, EdidVFmtsCount);
    std::copy_n(EdidVFmts.begin(), EdidVFmtsCount, destination);
}

std::uint8_t GetEDIDNativeVIC() {
    const std::uint8_t vic = gbNativeVIC & 0x7F;
    std::fprintf(stderr, " \n\r[Read EDID] GetEDIDNativeVIC() : %d", vic);
    return vic;
}

void GetNativeVIC(std::uint8_t* vic) { *vic = gbNativeVIC; }
