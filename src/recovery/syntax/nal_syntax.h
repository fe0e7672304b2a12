// H.264 / HEVC NAL-unit syntax reader: NAL headers, the parameter sets the
// slice headers depend on, and the first fields of slice headers. It tells
// where pictures begin inside a run of length-prefixed NAL units, which
// pictures are key frames, and the picture order count of each picture, so a
// sample table can be rebuilt from the coded data alone.
//
// Every input is treated as hostile: reads never go past the byte count they
// are given, every loop is bounded, and parameter sets with values no stream
// can hold are rejected rather than trusted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace syntax {

enum class NalCodec { H264, Hevc };

// What one NAL unit says about where pictures begin.
struct NalInfo {
    bool valid = false;           // forbidden bit 0 and a type met in streams (HEVC: layer 0, temporal id + 1 >= 1)
    int type = -1;                // nal_unit_type
    bool vcl = false;             // a coded slice: H.264 types 1..5, HEVC types 0..31
    bool sliceHeaderOk = false;   // the slice header parsed against a known PPS and SPS, all fields in range
    bool firstSliceOfPicture = false;  // first_mb_in_slice == 0 / first_slice_segment_in_pic_flag
    bool opensAccessUnit = false; // a unit that only stands before the first slice of an access unit
    bool keyframe = false;        // H.264 IDR; HEVC IRAP (16..23)
    bool pocReset = false;        // the picture order count starts again here: H.264 IDR or a slice whose
                                  // marking holds operation 5; HEVC IDR and BLA (16..20)
    bool reference = true;        // H.264 nal_ref_idc != 0; HEVC not a sub-layer non-reference picture
    int64_t pocLsb = 0;           // pic_order_cnt_lsb / slice_pic_order_cnt_lsb (0 for HEVC IDR)

    // Slice header fields, meaningful when sliceHeaderOk.
    int temporalId = 0;           // HEVC TemporalId
    int nalRefIdc = 0;            // H.264
    int ppsId = -1;
    int spsId = -1;
    int sliceType = -1;           // H.264 slice_type % 5 (P 0, B 1, I 2, SP 3, SI 4); HEVC (B 0, P 1, I 2);
                                  // -1 for an HEVC dependent slice segment
    bool dependentSlice = false;  // HEVC dependent_slice_segment_flag
    int colourPlaneId = 0;
    int frameNum = 0;             // H.264
    bool fieldPic = false;        // H.264 field_pic_flag
    bool bottomField = false;     // H.264 bottom_field_flag
    int idrPicId = -1;            // H.264, IDR only
    int64_t deltaPocBottom = 0;   // H.264 delta_pic_order_cnt_bottom
    int64_t deltaPoc[2] = {0, 0}; // H.264 delta_pic_order_cnt[0..1]
    bool mmco5 = false;           // H.264 memory management operation 5 (false when the marking lay past the bytes given)
};

// The parameter sets as far as the slice headers and the order counts need them.
struct AvcSps {
    bool present = false;
    int profileIdc = 0;
    int chromaFormatIdc = 1;
    bool separateColourPlane = false;
    int log2MaxFrameNum = 4;
    int pocType = 0;
    int log2MaxPocLsb = 4;
    bool deltaPicOrderAlwaysZero = false;
    int64_t offsetForNonRefPic = 0;
    int64_t offsetForTopToBottomField = 0;
    int numRefFramesInPocCycle = 0;
    int64_t offsetForRefFrame[255] = {};
    int64_t expectedDeltaPerPocCycle = 0;
    int maxNumRefFrames = 0;
    int widthMbs = 0;
    int heightMapUnits = 0;
    bool frameMbsOnly = true;
    bool mbAdaptiveFrameField = false;
    int frameHeightMbs() const { return (frameMbsOnly ? 1 : 2) * heightMapUnits; }
};
struct AvcPps {
    bool present = false;
    int spsId = 0;
    bool bottomFieldPicOrderInFramePresent = false;
    int numSliceGroups = 1;
    int numRefIdxDefault[2] = {1, 1};
    bool weightedPred = false;
    int weightedBipredIdc = 0;
    bool redundantPicCntPresent = false;
};
struct HevcSps {
    bool present = false;
    int vpsId = 0;
    int maxSubLayers = 1;
    int chromaFormatIdc = 1;
    bool separateColourPlane = false;
    int width = 0;               // luma samples
    int height = 0;
    int log2MinCb = 3;
    int log2Ctb = 4;
    int log2MaxPocLsb = 4;
    int picSizeInCtbs = 0;
    int addressBits = 0;         // bits of slice_segment_address
};
struct HevcPps {
    bool present = false;
    int spsId = 0;
    bool dependentSliceSegmentsEnabled = false;
    bool outputFlagPresent = false;
    int numExtraSliceHeaderBits = 0;
};

class NalSyntax {
public:
    explicit NalSyntax(NalCodec codec = NalCodec::H264);

    // The decoder configuration record: the payload of an avcC / hvcC box (the
    // bytes after its size and type). Forgets all earlier parameter sets, then
    // reads the length size and every parameter set in it. False when the record
    // is cut, has a length size other than 1, 2 or 4, or holds no usable SPS or PPS.
    bool loadConfig(NalCodec codec, const uint8_t* cfg, size_t n);
    NalCodec codec() const { return m_codec; }
    int lengthSize() const { return m_lengthSize; }

    // A parameter set met in the stream (SPS, PPS, VPS unit, header included):
    // kept by its id when it parses, replacing the one before; ignored (false)
    // otherwise. Other unit types are ignored.
    bool learnParameterSet(const uint8_t* nal, size_t n);

    // Inspects one NAL unit, header included. n is the bytes available (the
    // caller may pass only the head of the unit); nothing past n is read and a
    // slice header cut short leaves sliceHeaderOk false. Allocation-free.
    NalInfo inspect(const uint8_t* nal, size_t n) const;

    // The parameter sets kept, or nullptr.
    const AvcSps* avcSps(int id) const;
    const AvcPps* avcPps(int id) const;
    const HevcSps* hevcSps(int id) const;
    const HevcPps* hevcPps(int id) const;

private:
    void clear();
    NalInfo inspectAvc(const uint8_t* nal, size_t n) const;
    NalInfo inspectHevc(const uint8_t* nal, size_t n) const;

    NalCodec m_codec;
    int m_lengthSize = 4;
    // By id, up to the highest id met (of at most 32, 256, 16 and 64).
    std::vector<AvcSps> m_avcSps;
    std::vector<AvcPps> m_avcPps;
    std::vector<HevcSps> m_hevcSps;
    std::vector<HevcPps> m_hevcPps;
    uint16_t m_hevcVps = 0;            // bit per vps id seen
};

// Picture order counts of pictures in decode order. Feed the NalInfo of each
// picture's first slice, in decode order. For H.264 field pairs held in one
// sample, the first field alone is enough. A slice whose header did not parse
// gets the count before it plus one and leaves the state alone.
class PocTracker {
public:
    explicit PocTracker(const NalSyntax& syntax) : m_syntax(syntax) {}
    int64_t next(const NalInfo& firstSlice);
    // The next picture starts a fresh stream (after a gap or an end of sequence).
    void reset() { m_s = State(); }

private:
    struct State {
        bool started = false;
        int64_t last = 0;
        // H.264, order count type 0: the previous reference picture.
        int64_t prevMsb = 0;
        int64_t prevLsb = 0;
        // H.264, types 1 and 2: the previous picture.
        int64_t prevFrameNumOffset = 0;
        int prevFrameNum = 0;
        // HEVC: the order count of the previous TemporalId 0 picture that is
        // not RASL, RADL or a sub-layer non-reference picture.
        int64_t prevTid0Poc = 0;
    };
    int64_t nextAvc(const NalInfo& s, const AvcSps& sps);
    int64_t nextHevc(const NalInfo& s, const HevcSps& sps);

    const NalSyntax& m_syntax;
    State m_s;
};

} // namespace syntax
