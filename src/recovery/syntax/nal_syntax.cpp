// H.264 / HEVC NAL-unit syntax reader; see nal_syntax.h.
#include "recovery/syntax/nal_syntax.h"

#include <algorithm>

namespace syntax {

namespace {

// Reads the bits of a NAL unit's payload, dropping emulation prevention bytes
// (the 03 of 00 00 03) on the fly, so no copy of the payload is made. Bits past
// the end read as zero and mark the reader as overrun; a malformed Exp-Golomb
// code marks it as broken. Callers check ok() after a group of reads.
class BitReader {
public:
    BitReader(const uint8_t* p, size_t n) : m_p(p), m_n(p ? n : 0) {}

    bool ok() const { return !m_overrun && !m_broken; }
    bool overrun() const { return m_overrun; }
    void fail() { m_broken = true; }

    uint32_t bit()
    {
        if (m_left == 0)
            load();
        --m_left;
        return (m_cur >> m_left) & 1u;
    }
    uint32_t bits(int count)   // count 0..32
    {
        uint32_t v = 0;
        for (int i = 0; i < count; ++i)
            v = (v << 1) | bit();
        return v;
    }
    // Skips count bits; stops early once the data has run out.
    void skip(uint64_t count)
    {
        for (uint64_t i = 0; i < count && !m_overrun; ++i)
            bit();
    }
    // ue(v): up to 31 leading zero bits, so the value fits in 32 bits.
    uint32_t ue()
    {
        int zeros = 0;
        while (bit() == 0) {
            if (++zeros > 31 || m_overrun) {
                m_broken = true;
                return 0;
            }
        }
        return zeros == 0 ? 0u : uint32_t(((uint64_t(1) << zeros) - 1) + bits(zeros));
    }
    int64_t se()
    {
        const uint64_t k = ue();
        return (k & 1) ? int64_t((k + 1) / 2) : -int64_t(k / 2);
    }
    // Reads that must lie in a range: out of it, the reader is marked broken
    // and the value read is 0, so no caller computes with it.
    int64_t se(int64_t lo, int64_t hi)
    {
        const int64_t v = se();
        if (v >= lo && v <= hi)
            return v;
        m_broken = true;
        return 0;
    }
    uint32_t ue(uint32_t hi)
    {
        const uint32_t v = ue();
        if (v <= hi)
            return v;
        m_broken = true;
        return 0;
    }

private:
    void load()
    {
        m_left = 8;
        if (m_pos >= m_n) {
            m_cur = 0;
            m_overrun = true;
            return;
        }
        uint8_t b = m_p[m_pos++];
        if (m_zeros >= 2 && b == 3) {
            m_zeros = 0;
            if (m_pos >= m_n) {
                m_cur = 0;
                m_overrun = true;
                return;
            }
            b = m_p[m_pos++];
        }
        m_zeros = b == 0 ? m_zeros + 1 : 0;
        m_cur = b;
    }

    const uint8_t* m_p;
    size_t m_n;
    size_t m_pos = 0;
    int m_zeros = 0;
    uint32_t m_cur = 0;
    int m_left = 0;
    bool m_overrun = false;
    bool m_broken = false;
};

constexpr int64_t kInt32Min = -2147483647;   // the se(v) fields bounded to 32 bits exclude -2^31
constexpr int64_t kInt32Max = 2147483647;

// Ceil(Log2(v)) for v >= 1.
int CeilLog2(uint64_t v)
{
    int r = 0;
    while ((uint64_t(1) << r) < v)
        ++r;
    return r;
}

// ---------------------------------------------------------------- H.264

bool AvcValidType(int t) { return (t >= 1 && t <= 12) || t == 14 || t == 15 || t == 19 || t == 20; }

bool AvcHasChromaFormat(int profile)
{
    switch (profile) {
    case 100: case 110: case 122: case 244: case 44: case 83: case 86:
    case 118: case 128: case 138: case 139: case 134: case 135:
        return true;
    default:
        return false;
    }
}

// scaling_list(): only the deltas matter here, each in -128..127.
void SkipScalingList(BitReader& r, int size)
{
    int last = 8, next = 8;
    for (int j = 0; j < size && r.ok(); ++j) {
        if (next != 0) {
            const int64_t delta = r.se(-128, 127);
            next = int((last + delta + 256) % 256);
        }
        last = next == 0 ? last : next;
    }
}

bool ParseAvcSps(BitReader& r, AvcSps& s, int& id)
{
    s = AvcSps();
    s.profileIdc = int(r.bits(8));
    r.bits(16);   // constraint flags, level_idc
    id = int(r.ue(31));
    if (AvcHasChromaFormat(s.profileIdc)) {
        s.chromaFormatIdc = int(r.ue(3));
        if (s.chromaFormatIdc == 3)
            s.separateColourPlane = r.bit();
        r.ue(6);   // bit_depth_luma_minus8
        r.ue(6);   // bit_depth_chroma_minus8
        r.bit();   // qpprime_y_zero_transform_bypass_flag
        if (r.bit()) {   // seq_scaling_matrix_present_flag
            const int lists = s.chromaFormatIdc != 3 ? 8 : 12;
            for (int i = 0; i < lists && r.ok(); ++i)
                if (r.bit())
                    SkipScalingList(r, i < 6 ? 16 : 64);
        }
    }
    s.log2MaxFrameNum = int(r.ue(12)) + 4;
    s.pocType = int(r.ue(2));
    if (s.pocType == 0) {
        s.log2MaxPocLsb = int(r.ue(12)) + 4;
    } else if (s.pocType == 1) {
        s.deltaPicOrderAlwaysZero = r.bit();
        s.offsetForNonRefPic = r.se(kInt32Min, kInt32Max);
        s.offsetForTopToBottomField = r.se(kInt32Min, kInt32Max);
        s.numRefFramesInPocCycle = int(r.ue(255));
        if (!r.ok())
            return false;
        for (int i = 0; i < s.numRefFramesInPocCycle && r.ok(); ++i) {
            s.offsetForRefFrame[i] = r.se(kInt32Min, kInt32Max);
            s.expectedDeltaPerPocCycle += s.offsetForRefFrame[i];
        }
    }
    s.maxNumRefFrames = int(r.ue(16));
    r.bit();   // gaps_in_frame_num_value_allowed_flag
    s.widthMbs = int(r.ue(1023)) + 1;
    s.heightMapUnits = int(r.ue(1023)) + 1;
    s.frameMbsOnly = r.bit();
    if (!s.frameMbsOnly)
        s.mbAdaptiveFrameField = r.bit();
    if (!r.ok() || s.frameHeightMbs() > 1024)
        return false;
    s.present = true;
    return true;
}

bool ParseAvcPps(BitReader& r, AvcPps& p, int& id)
{
    p = AvcPps();
    id = int(r.ue(255));
    p.spsId = int(r.ue(31));
    r.bit();   // entropy_coding_mode_flag
    p.bottomFieldPicOrderInFramePresent = r.bit();
    p.numSliceGroups = int(r.ue(7)) + 1;
    if (!r.ok())
        return false;
    if (p.numSliceGroups > 1) {
        const uint32_t mapType = r.ue(6);
        if (mapType == 0) {
            for (int i = 0; i < p.numSliceGroups; ++i)
                r.ue();   // run_length_minus1
        } else if (mapType == 2) {
            for (int i = 0; i + 1 < p.numSliceGroups; ++i) {
                r.ue();   // top_left
                r.ue();   // bottom_right
            }
        } else if (mapType >= 3 && mapType <= 5) {
            r.bit();   // slice_group_change_direction_flag
            r.ue();    // slice_group_change_rate_minus1
        } else if (mapType == 6) {
            const uint32_t units = r.ue(1024u * 1024u - 1) + 1;   // pic_size_in_map_units_minus1 + 1
            if (!r.ok())
                return false;
            r.skip(uint64_t(units) * CeilLog2(uint64_t(p.numSliceGroups)));   // slice_group_id[]
        }
    }
    p.numRefIdxDefault[0] = int(r.ue(31)) + 1;
    p.numRefIdxDefault[1] = int(r.ue(31)) + 1;
    p.weightedPred = r.bit();
    p.weightedBipredIdc = int(r.bits(2));
    r.se(-26 - 48, 25);   // pic_init_qp_minus26 (bit depths up to 14)
    r.se(-26, 25);        // pic_init_qs_minus26
    r.se(-12, 12);        // chroma_qp_index_offset
    r.bit();              // deblocking_filter_control_present_flag
    r.bit();              // constrained_intra_pred_flag
    p.redundantPicCntPresent = r.bit();
    if (!r.ok() || p.weightedBipredIdc > 2)
        return false;
    p.present = true;
    return true;
}

// ref_pic_list_modification() of one list; false when malformed.
bool SkipAvcListModification(BitReader& r)
{
    if (!r.bit())
        return true;
    for (int i = 0; i < 100 && r.ok(); ++i) {   // at most one per reference index and the end mark
        const uint32_t idc = r.ue();
        if (idc == 3)
            return true;
        if (idc > 5)
            return false;
        r.ue();   // abs_diff_pic_num_minus1, long_term_pic_num or abs_diff_view_idx_minus1
    }
    return false;
}

void SkipAvcWeights(BitReader& r, int refs, bool chroma)
{
    for (int i = 0; i < refs && r.ok(); ++i) {
        if (r.bit()) {   // luma_weight_flag
            r.se();
            r.se();
        }
        if (chroma && r.bit()) {   // chroma_weight_flag
            for (int j = 0; j < 4; ++j)
                r.se();
        }
    }
}

// ---------------------------------------------------------------- HEVC

bool HevcValidType(int t) { return (t >= 0 && t <= 9) || (t >= 16 && t <= 21) || (t >= 32 && t <= 40); }

void SkipProfileTierLevel(BitReader& r, int maxSubLayersMinus1)
{
    r.skip(88);   // general profile space, tier, profile, compatibility flags, constraint flags
    r.bits(8);    // general_level_idc
    bool profilePresent[8] = {}, levelPresent[8] = {};
    for (int i = 0; i < maxSubLayersMinus1; ++i) {
        profilePresent[i] = r.bit();
        levelPresent[i] = r.bit();
    }
    if (maxSubLayersMinus1 > 0)
        for (int i = maxSubLayersMinus1; i < 8; ++i)
            r.bits(2);   // reserved_zero_2bits
    for (int i = 0; i < maxSubLayersMinus1; ++i) {
        if (profilePresent[i])
            r.skip(88);
        if (levelPresent[i])
            r.bits(8);
    }
}

bool ParseHevcVps(BitReader& r, int& id)
{
    id = int(r.bits(4));
    r.bits(2);    // base layer internal / available flags
    r.bits(6);    // vps_max_layers_minus1
    const uint32_t subLayersMinus1 = r.bits(3);
    r.bit();      // vps_temporal_id_nesting_flag
    const uint32_t reserved = r.bits(16);
    return r.ok() && subLayersMinus1 <= 6 && reserved == 0xFFFF;
}

bool ParseHevcSps(BitReader& r, HevcSps& s, int& id)
{
    s = HevcSps();
    s.vpsId = int(r.bits(4));
    const int subLayersMinus1 = int(r.bits(3));
    if (subLayersMinus1 > 6)
        return false;
    s.maxSubLayers = subLayersMinus1 + 1;
    r.bit();   // sps_temporal_id_nesting_flag
    SkipProfileTierLevel(r, subLayersMinus1);
    id = int(r.ue(15));
    s.chromaFormatIdc = int(r.ue(3));
    if (s.chromaFormatIdc == 3)
        s.separateColourPlane = r.bit();
    s.width = int(r.ue(16888));
    s.height = int(r.ue(16888));
    if (r.bit()) {   // conformance_window_flag
        for (int i = 0; i < 4; ++i)
            r.ue();
    }
    r.ue(8);   // bit_depth_luma_minus8
    r.ue(8);   // bit_depth_chroma_minus8
    s.log2MaxPocLsb = int(r.ue(12)) + 4;
    const bool orderingInfoForAll = r.bit();
    for (int i = orderingInfoForAll ? 0 : subLayersMinus1; i <= subLayersMinus1; ++i) {
        const uint32_t maxDecMinus1 = r.ue(15);
        if (r.ue() > maxDecMinus1)   // sps_max_num_reorder_pics
            r.fail();
        r.ue();   // sps_max_latency_increase_plus1
    }
    s.log2MinCb = int(r.ue(3)) + 3;
    s.log2Ctb = s.log2MinCb + int(r.ue(3));
    if (!r.ok() || s.log2Ctb > 6 || s.width == 0 || s.height == 0)
        return false;
    const int minCb = 1 << s.log2MinCb;
    if (s.width % minCb != 0 || s.height % minCb != 0)
        return false;
    const int ctb = 1 << s.log2Ctb;
    s.picSizeInCtbs = ((s.width + ctb - 1) / ctb) * ((s.height + ctb - 1) / ctb);
    s.addressBits = CeilLog2(uint64_t(s.picSizeInCtbs));
    s.present = true;
    return true;
}

bool ParseHevcPps(BitReader& r, HevcPps& p, int& id)
{
    p = HevcPps();
    id = int(r.ue(63));
    p.spsId = int(r.ue(15));
    p.dependentSliceSegmentsEnabled = r.bit();
    p.outputFlagPresent = r.bit();
    p.numExtraSliceHeaderBits = int(r.bits(3));
    if (!r.ok())
        return false;
    p.present = true;
    return true;
}

} // namespace

// ---------------------------------------------------------------- NalSyntax

NalSyntax::NalSyntax(NalCodec codec) : m_codec(codec) { clear(); }

void NalSyntax::clear()
{
    m_lengthSize = 4;
    // The tables grow to the ids met (see Keep): most streams use id 0 only.
    m_avcSps.clear();
    m_avcPps.clear();
    m_hevcSps.clear();
    m_hevcPps.clear();
    m_hevcVps = 0;
}

namespace {
template <typename Set>
void Keep(std::vector<Set>& table, int id, const Set& set)
{
    if (size_t(id) >= table.size())
        table.resize(size_t(id) + 1);
    table[size_t(id)] = set;
}
} // namespace

const AvcSps* NalSyntax::avcSps(int id) const
{
    return id >= 0 && id < int(m_avcSps.size()) && m_avcSps[size_t(id)].present ? &m_avcSps[size_t(id)] : nullptr;
}
const AvcPps* NalSyntax::avcPps(int id) const
{
    return id >= 0 && id < int(m_avcPps.size()) && m_avcPps[size_t(id)].present ? &m_avcPps[size_t(id)] : nullptr;
}
const HevcSps* NalSyntax::hevcSps(int id) const
{
    return id >= 0 && id < int(m_hevcSps.size()) && m_hevcSps[size_t(id)].present ? &m_hevcSps[size_t(id)] : nullptr;
}
const HevcPps* NalSyntax::hevcPps(int id) const
{
    return id >= 0 && id < int(m_hevcPps.size()) && m_hevcPps[size_t(id)].present ? &m_hevcPps[size_t(id)] : nullptr;
}

bool NalSyntax::loadConfig(NalCodec codec, const uint8_t* cfg, size_t n)
{
    m_codec = codec;
    clear();
    if (!cfg)
        return false;
    size_t pos;
    int lengthSizeMinusOne;
    bool cut = false;
    bool sps = false, pps = false;
    // Reads `count` units, each behind a 16-bit length, learning each.
    auto units = [&](size_t count) {
        for (size_t i = 0; i < count; ++i) {
            if (n - pos < 2) {
                cut = true;
                return;
            }
            const size_t len = size_t(cfg[pos]) << 8 | cfg[pos + 1];
            pos += 2;
            if (n - pos < len) {
                cut = true;
                return;
            }
            if (learnParameterSet(cfg + pos, len) && len > 0) {
                const int t = codec == NalCodec::H264 ? (cfg[pos] & 31) : (cfg[pos] >> 1) & 63;
                sps |= t == (codec == NalCodec::H264 ? 7 : 33);
                pps |= t == (codec == NalCodec::H264 ? 8 : 34);
            }
            pos += len;
        }
    };
    if (codec == NalCodec::H264) {
        if (n < 6)
            return false;
        lengthSizeMinusOne = cfg[4] & 3;
        pos = 6;
        units(cfg[5] & 31);
        if (!cut && pos < n) {
            const size_t count = cfg[pos++];
            units(count);
        } else {
            cut = true;
        }
    } else {
        if (n < 23)
            return false;
        lengthSizeMinusOne = cfg[21] & 3;
        const int arrays = cfg[22];
        pos = 23;
        for (int a = 0; a < arrays && !cut; ++a) {
            if (n - pos < 3) {
                cut = true;
                break;
            }
            const size_t count = size_t(cfg[pos + 1]) << 8 | cfg[pos + 2];
            pos += 3;
            units(count);
        }
    }
    if (lengthSizeMinusOne == 2)
        return false;
    m_lengthSize = lengthSizeMinusOne + 1;
    return !cut && sps && pps;
}

bool NalSyntax::learnParameterSet(const uint8_t* nal, size_t n)
{
    if (!nal || n < 2 || (nal[0] & 0x80))
        return false;
    int id = 0;
    if (m_codec == NalCodec::H264) {
        const int type = nal[0] & 31;
        BitReader r(nal + 1, n - 1);
        if (type == 7) {
            AvcSps s;
            if (!ParseAvcSps(r, s, id))
                return false;
            Keep(m_avcSps, id, s);
            return true;
        }
        if (type == 8) {
            AvcPps p;
            if (!ParseAvcPps(r, p, id))
                return false;
            Keep(m_avcPps, id, p);
            return true;
        }
        return false;
    }
    const int type = (nal[0] >> 1) & 63;
    const int layer = (nal[0] & 1) << 5 | nal[1] >> 3;
    if (layer != 0 || (nal[1] & 7) == 0)
        return false;
    BitReader r(nal + 2, n - 2);
    if (type == 32) {
        if (!ParseHevcVps(r, id))
            return false;
        m_hevcVps = uint16_t(m_hevcVps | 1u << id);
        return true;
    }
    if (type == 33) {
        HevcSps s;
        if (!ParseHevcSps(r, s, id))
            return false;
        Keep(m_hevcSps, id, s);
        return true;
    }
    if (type == 34) {
        HevcPps p;
        if (!ParseHevcPps(r, p, id))
            return false;
        Keep(m_hevcPps, id, p);
        return true;
    }
    return false;
}

NalInfo NalSyntax::inspect(const uint8_t* nal, size_t n) const
{
    if (!nal)
        return NalInfo();
    return m_codec == NalCodec::H264 ? inspectAvc(nal, n) : inspectHevc(nal, n);
}

NalInfo NalSyntax::inspectAvc(const uint8_t* nal, size_t n) const
{
    NalInfo info;
    if (n < 1)
        return info;
    const int type = nal[0] & 31;
    info.type = type;
    info.nalRefIdc = (nal[0] >> 5) & 3;
    info.valid = !(nal[0] & 0x80) && AvcValidType(type);
    if (!info.valid)
        return info;
    info.reference = info.nalRefIdc != 0;
    info.vcl = type >= 1 && type <= 5;
    info.keyframe = info.pocReset = type == 5;
    info.opensAccessUnit = (type >= 6 && type <= 9) || type == 14 || type == 15;
    if (type != 1 && type != 2 && type != 5)
        return info;   // partitions B and C carry no slice header

    const bool idr = type == 5;
    BitReader r(nal + 1, n - 1);
    const uint32_t firstMb = r.ue();
    if (!r.ok())
        return info;
    info.firstSliceOfPicture = firstMb == 0;
    const uint32_t sliceType = r.ue(9);
    info.ppsId = int(r.ue(255));
    if (!r.ok())
        return info;
    info.sliceType = int(sliceType % 5);
    const AvcPps* pps = avcPps(info.ppsId);
    const AvcSps* sps = pps ? avcSps(pps->spsId) : nullptr;
    if (!sps)
        return info;
    info.spsId = pps->spsId;
    if (sps->separateColourPlane)
        info.colourPlaneId = int(r.bits(2));
    info.frameNum = int(r.bits(sps->log2MaxFrameNum));
    if (!sps->frameMbsOnly) {
        info.fieldPic = r.bit();
        if (info.fieldPic)
            info.bottomField = r.bit();
    }
    if (idr)
        info.idrPicId = int(r.ue(65535));
    const bool bottomPresent = pps->bottomFieldPicOrderInFramePresent && !info.fieldPic;
    if (sps->pocType == 0) {
        info.pocLsb = r.bits(sps->log2MaxPocLsb);
        if (bottomPresent)
            info.deltaPocBottom = r.se(kInt32Min, kInt32Max);
    } else if (sps->pocType == 1 && !sps->deltaPicOrderAlwaysZero) {
        info.deltaPoc[0] = r.se(kInt32Min, kInt32Max);
        if (bottomPresent)
            info.deltaPoc[1] = r.se(kInt32Min, kInt32Max);
    }
    if (!r.ok())
        return info;
    const bool mbaff = sps->mbAdaptiveFrameField && !info.fieldPic;
    const uint64_t picSizeMbs = uint64_t(sps->widthMbs) * uint64_t(sps->frameHeightMbs()) / (info.fieldPic ? 2 : 1);
    if (uint64_t(firstMb) * (mbaff ? 2 : 1) >= picSizeMbs || info.colourPlaneId > 2)
        return info;
    if (idr && ((info.sliceType != 2 && info.sliceType != 4) || info.frameNum != 0))
        return info;
    info.sliceHeaderOk = true;

    // On to the reference marking, for operation 5; given up quietly when the
    // bytes run out first.
    if (pps->redundantPicCntPresent)
        r.ue(127);
    const int t = info.sliceType;
    if (t == 1)
        r.bit();   // direct_spatial_mv_pred_flag
    int refs[2] = {pps->numRefIdxDefault[0], pps->numRefIdxDefault[1]};
    if (t == 0 || t == 1 || t == 3) {
        if (r.bit()) {   // num_ref_idx_active_override_flag
            refs[0] = int(r.ue(31)) + 1;
            if (t == 1)
                refs[1] = int(r.ue(31)) + 1;
        }
    }
    if (t != 2 && t != 4 && !SkipAvcListModification(r))
        return info;
    if (t == 1 && !SkipAvcListModification(r))
        return info;
    const bool chroma = !sps->separateColourPlane && sps->chromaFormatIdc != 0;
    if ((pps->weightedPred && (t == 0 || t == 3)) || (pps->weightedBipredIdc == 1 && t == 1)) {
        r.ue(7);   // luma_log2_weight_denom
        if (chroma)
            r.ue(7);   // chroma_log2_weight_denom
        SkipAvcWeights(r, refs[0], chroma);
        if (t == 1)
            SkipAvcWeights(r, refs[1], chroma);
    }
    if (info.nalRefIdc == 0 || !r.ok())
        return info;
    if (idr) {
        r.bits(2);   // no_output_of_prior_pics_flag, long_term_reference_flag
        return info;
    }
    if (!r.bit())   // adaptive_ref_pic_marking_mode_flag
        return info;
    bool mmco5 = false;
    for (int i = 0; i < 100 && r.ok(); ++i) {
        const uint32_t op = r.ue();
        if (op == 0) {
            info.mmco5 = mmco5 && r.ok();
            info.pocReset = info.mmco5;
            return info;
        }
        if (op > 6)
            return info;
        mmco5 |= op == 5;
        if (op == 1 || op == 3)
            r.ue();   // difference_of_pic_nums_minus1
        if (op == 2)
            r.ue();   // long_term_pic_num
        if (op == 3 || op == 6)
            r.ue();   // long_term_frame_idx
        if (op == 4)
            r.ue();   // max_long_term_frame_idx_plus1
    }
    return info;
}

NalInfo NalSyntax::inspectHevc(const uint8_t* nal, size_t n) const
{
    NalInfo info;
    if (n < 2)
        return info;
    const int type = (nal[0] >> 1) & 63;
    const int layer = (nal[0] & 1) << 5 | nal[1] >> 3;
    const int tidPlus1 = nal[1] & 7;
    info.type = type;
    info.valid = !(nal[0] & 0x80) && layer == 0 && tidPlus1 >= 1 && HevcValidType(type);
    if (!info.valid)
        return info;
    info.temporalId = tidPlus1 - 1;
    info.vcl = type < 32;
    const bool irap = type >= 16 && type <= 23;
    const bool idr = type == 19 || type == 20;
    info.keyframe = irap;
    info.pocReset = type >= 16 && type <= 20;
    info.reference = !(type <= 14 && type % 2 == 0);
    info.opensAccessUnit = (type >= 32 && type <= 35) || type == 39;
    if (!info.vcl)
        return info;

    BitReader r(nal + 2, n - 2);
    info.firstSliceOfPicture = r.bit();
    if (!r.ok()) {
        info.firstSliceOfPicture = false;
        return info;
    }
    if (irap)
        r.bit();   // no_output_of_prior_pics_flag
    info.ppsId = int(r.ue(63));
    if (!r.ok())
        return info;
    const HevcPps* pps = hevcPps(info.ppsId);
    const HevcSps* sps = pps ? hevcSps(pps->spsId) : nullptr;
    if (!sps)
        return info;
    info.spsId = pps->spsId;
    if (!info.firstSliceOfPicture) {
        if (pps->dependentSliceSegmentsEnabled)
            info.dependentSlice = r.bit();
        const uint32_t address = r.bits(sps->addressBits);
        if (address == 0 || address >= uint32_t(sps->picSizeInCtbs))
            return info;
    }
    if (!info.dependentSlice) {
        r.bits(pps->numExtraSliceHeaderBits);   // slice_reserved_flag[]
        info.sliceType = int(r.ue(2));
        if (pps->outputFlagPresent)
            r.bit();   // pic_output_flag
        if (sps->separateColourPlane)
            info.colourPlaneId = int(r.bits(2));
        if (!idr)
            info.pocLsb = r.bits(sps->log2MaxPocLsb);
        if (irap && info.sliceType != 2)
            return info;
    }
    info.sliceHeaderOk = r.ok() && info.colourPlaneId <= 2;
    return info;
}

// ---------------------------------------------------------------- PocTracker

int64_t PocTracker::next(const NalInfo& s)
{
    if (s.sliceHeaderOk) {
        if (m_syntax.codec() == NalCodec::H264) {
            if (const AvcSps* sps = m_syntax.avcSps(s.spsId))
                return m_s.last = nextAvc(s, *sps);
        } else if (const HevcSps* sps = m_syntax.hevcSps(s.spsId)) {
            return m_s.last = nextHevc(s, *sps);
        }
    }
    return ++m_s.last;
}

int64_t PocTracker::nextAvc(const NalInfo& s, const AvcSps& sps)
{
    const bool idr = s.type == 5;
    const bool ref = s.nalRefIdc != 0;
    int64_t top = 0, bottom = 0;
    const int64_t maxFrameNum = int64_t(1) << sps.log2MaxFrameNum;
    int64_t frameNumOffset = 0;
    if (sps.pocType != 0 && !idr) {
        frameNumOffset = m_s.prevFrameNumOffset;
        if (m_s.started && m_s.prevFrameNum > s.frameNum)
            frameNumOffset += maxFrameNum;
    }
    if (sps.pocType == 0) {
        int64_t prevMsb = m_s.prevMsb, prevLsb = m_s.prevLsb;
        if (idr || !m_s.started)
            prevMsb = prevLsb = 0;
        const int64_t maxLsb = int64_t(1) << sps.log2MaxPocLsb;
        int64_t msb = prevMsb;
        if (s.pocLsb < prevLsb && prevLsb - s.pocLsb >= maxLsb / 2)
            msb = prevMsb + maxLsb;
        else if (s.pocLsb > prevLsb && s.pocLsb - prevLsb > maxLsb / 2)
            msb = prevMsb - maxLsb;
        top = msb + s.pocLsb;
        bottom = s.fieldPic ? msb + s.pocLsb : top + s.deltaPocBottom;
        if (ref) {
            m_s.prevMsb = msb;
            m_s.prevLsb = s.pocLsb;
        }
    } else if (sps.pocType == 1) {
        int64_t absFrameNum = sps.numRefFramesInPocCycle != 0 ? frameNumOffset + s.frameNum : 0;
        if (!ref && absFrameNum > 0)
            --absFrameNum;
        // Hostile offsets with frame numbers wrapping on every picture can
        // outgrow 64 bits; the sum wraps instead of overflowing.
        uint64_t expectedBits = 0;
        if (absFrameNum > 0) {
            const int64_t cycle = (absFrameNum - 1) / sps.numRefFramesInPocCycle;
            const int inCycle = int((absFrameNum - 1) % sps.numRefFramesInPocCycle);
            expectedBits = uint64_t(cycle) * uint64_t(sps.expectedDeltaPerPocCycle);
            for (int i = 0; i <= inCycle; ++i)
                expectedBits += uint64_t(sps.offsetForRefFrame[i]);
        }
        if (!ref)
            expectedBits += uint64_t(sps.offsetForNonRefPic);
        const uint64_t topBits = expectedBits + uint64_t(s.deltaPoc[0]);
        top = int64_t(topBits);
        bottom = int64_t(!s.fieldPic ? topBits + uint64_t(sps.offsetForTopToBottomField) + uint64_t(s.deltaPoc[1])
                                     : expectedBits + uint64_t(sps.offsetForTopToBottomField) + uint64_t(s.deltaPoc[0]));
    } else {
        const int64_t temp = idr ? 0 : 2 * (frameNumOffset + s.frameNum) - (ref ? 0 : 1);
        top = bottom = temp;
    }
    int64_t poc = !s.fieldPic ? std::min(top, bottom) : (s.bottomField ? bottom : top);

    m_s.prevFrameNumOffset = frameNumOffset;
    m_s.prevFrameNum = s.frameNum;
    if (s.mmco5) {
        // After operation 5 the picture counts from zero, and the next pictures
        // count from it as if from an IDR picture.
        const int64_t topAfter = int64_t(uint64_t(top) - uint64_t(poc));
        poc = 0;
        m_s.prevFrameNumOffset = 0;
        m_s.prevFrameNum = 0;
        m_s.prevMsb = 0;
        m_s.prevLsb = s.fieldPic && s.bottomField ? 0 : topAfter;
    }
    m_s.started = true;
    return poc;
}

int64_t PocTracker::nextHevc(const NalInfo& s, const HevcSps& sps)
{
    const int64_t maxLsb = int64_t(1) << sps.log2MaxPocLsb;
    const bool irap = s.type >= 16 && s.type <= 23;
    int64_t msb = 0;
    if (!(irap && (s.type <= 20 || !m_s.started))) {
        const int64_t prevLsb = m_s.prevTid0Poc & (maxLsb - 1);
        const int64_t prevMsb = m_s.prevTid0Poc - prevLsb;
        msb = prevMsb;
        if (s.pocLsb < prevLsb && prevLsb - s.pocLsb >= maxLsb / 2)
            msb = prevMsb + maxLsb;
        else if (s.pocLsb > prevLsb && s.pocLsb - prevLsb > maxLsb / 2)
            msb = prevMsb - maxLsb;
    }
    const int64_t poc = msb + s.pocLsb;
    const bool radlOrRasl = s.type >= 6 && s.type <= 9;
    if (s.temporalId == 0 && !radlOrRasl && s.reference)
        m_s.prevTid0Poc = poc;
    m_s.started = true;
    return poc;
}

} // namespace syntax
