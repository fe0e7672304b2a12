#include "recovery/syntax/codec_frames.h"

#include "core/byte_reader.h"
#include "core/code_search.h"

#include <neaacdec.h>

#include <algorithm>
#include <cstring>

namespace syntax {

namespace {

// Zero bytes kept behind every frame handed to FAAD2, so that its bit reader,
// which loads whole words, stays inside the buffer whatever it looks ahead.
constexpr size_t kDecoderSlack = 64;
// Bytes one channel of one raw frame can take (6144 bits), doubled for the
// extension data some streams carry in fill elements.
constexpr size_t kBytesPerChannel = 2 * 768;

// Channels of the AudioSpecificConfig channel configurations 1..7.
unsigned channelsOfConfiguration(unsigned config)
{
    return config >= 1 && config <= 6 ? config : config == 7 ? 8 : 0;
}

} // namespace

// ---- AAC ---------------------------------------------------------------------

AacFramer::AacFramer() = default;

AacFramer::~AacFramer()
{
    close();
}

void AacFramer::close()
{
    if (m_decoder)
        NeAACDecClose(static_cast<NeAACDecHandle>(m_decoder));
    m_decoder = nullptr;
}

bool AacFramer::open()
{
    close();
    m_spoiled = false;
    m_decodedSinceOpen = false;
    NeAACDecHandle h = NeAACDecOpen();
    if (!h)
        return false;
    NeAACDecConfigurationPtr config = NeAACDecGetCurrentConfiguration(h);
    config->outputFormat = FAAD_FMT_16BIT;
    config->downMatrix = 0;
    config->dontUpSampleImplicitSBR = 1;   // only the size is wanted: spare the SBR upsampling
    NeAACDecSetConfiguration(h, config);
    unsigned long rate = 0;
    unsigned char channels = 0;
    if (NeAACDecInit2(h, m_asc.data(), static_cast<unsigned long>(m_asc.size()), &rate, &channels) < 0) {
        NeAACDecClose(h);
        return false;
    }
    m_decoder = h;
    return true;
}

bool AacFramer::init(const uint8_t* asc, size_t n, bool decoderOnly)
{
    close();
    m_asc.clear();
    m_syntax = AacFrameParser();
    if (!asc || n < 2)
        return false;
    if (!decoderOnly)
        m_syntax.init(asc, n);
    m_asc.assign(asc, asc + n);
    // The decoder itself is made when a frame first needs it: the syntax
    // reader sizes most frames alone, and many scans meet no sound at all.
    mp4AudioSpecificConfig parsed;
    if (NeAACDecAudioSpecificConfig(m_asc.data(), static_cast<unsigned long>(n), &parsed) < 0) {
        m_asc.clear();
        return false;
    }
    m_channels = channelsOfConfiguration(parsed.channelsConfiguration);
    m_maxFrame = kBytesPerChannel * (m_channels ? m_channels : 64);
    m_buffer.assign(m_maxFrame + kDecoderSlack, 0);
    return true;
}

uint32_t AacFramer::decodeOnce(const uint8_t* p, size_t avail)
{
    // FAAD2 only ever sees the private copy: it never reads past avail, and
    // the zeros behind the copy serve its look ahead.
    const size_t n = std::min(avail, m_maxFrame);
    memcpy(m_buffer.data(), p, n);
    memset(m_buffer.data() + n, 0, kDecoderSlack);
    NeAACDecFrameInfo info;
    NeAACDecDecode(static_cast<NeAACDecHandle>(m_decoder), &info, m_buffer.data(), static_cast<unsigned long>(n));
    if (info.error || info.bytesconsumed == 0 || info.bytesconsumed > n)
        return 0;
    // Random bytes that happen to parse rarely give the configured channels.
    if (m_channels && info.channels != m_channels && !(m_channels == 1 && info.channels == 2 && info.ps))
        return 0;
    m_decodedSinceOpen = true;
    return static_cast<uint32_t>(info.bytesconsumed);
}

uint32_t AacFramer::frameSize(const uint8_t* p, size_t avail)
{
    if (m_asc.empty() || !p || avail == 0)
        return 0;
    if (m_syntax.ready()) {
        const size_t n = std::min(avail, m_maxFrame);
        if (const uint32_t size = m_syntax.frameSize(p, n))
            return size;
        if (m_syntax.decoderRefuses(p, n)) {
            // Refused without asking the decoder. One that has decoded
            // since its rebuild is due for another, as after any refusal;
            // a clean one stays clean.
            m_spoiled = m_spoiled || m_decodedSinceOpen;
            return 0;
        }
    }
    if ((m_spoiled || !m_decoder) && !open()) {
        m_asc.clear();   // a configuration the decoder won't take sizes nothing
        return 0;
    }
    uint32_t size = decodeOnce(p, avail);
    // Frames decoded since the last rebuild may have been false finds whose
    // state makes a true frame fail: answer from a clean decoder instead.
    if (!size && m_decodedSinceOpen) {
        if (!open()) {
            m_asc.clear();
            return 0;
        }
        size = decodeOnce(p, avail);
    }
    m_spoiled = size == 0;
    return size;
}

uint32_t AacFramer::frameSize(ByteReader& r, uint64_t pos, uint64_t end)
{
    end = std::min(end, r.size());
    if (pos >= end || m_asc.empty())
        return 0;
    const size_t n = static_cast<size_t>(std::min<uint64_t>(end - pos, m_maxFrame));
    if (n <= r.maxView())
        return frameSize(r.view(pos, n), n);
    // A reader of small windows (one that reads little around each of many
    // short stretches) serves a long frame through a copy.
    m_copy.resize(n);
    r.read(pos, m_copy.data(), n);
    return frameSize(m_copy.data(), n);
}

// ---- esds ----------------------------------------------------------------------

namespace {

struct Descriptor {
    uint8_t tag = 0;
    size_t body = 0;    // offset of the body
    size_t len = 0;     // body length, clamped to the bytes there are
    bool cut = false;   // the declared length runs past them
};

// The descriptor at `at`, before `limit`; false when not even its header fits.
bool descriptorAt(const uint8_t* d, size_t limit, size_t at, Descriptor& out)
{
    if (at >= limit)
        return false;
    out.tag = d[at];
    size_t q = at + 1;
    uint32_t len = 0;
    for (int i = 0;; ++i) {
        if (q >= limit || i == 4)
            return false;
        const uint8_t b = d[q++];
        len = len << 7 | (b & 0x7F);
        if (!(b & 0x80))
            break;
    }
    out.body = q;
    out.cut = len > limit - q;
    out.len = out.cut ? limit - q : len;
    return true;
}

// The first child with the tag among the descriptors in [at, limit).
bool findChild(const uint8_t* d, size_t at, size_t limit, uint8_t tag, Descriptor& out)
{
    while (descriptorAt(d, limit, at, out)) {
        if (out.tag == tag)
            return true;
        at = out.body + out.len;
    }
    return false;
}

QByteArray decoderSpecificInfo(const uint8_t* d, size_t n, bool (*wanted)(uint8_t objectType))
{
    if (!d || n == 0)
        return {};
    // The payload may come with or without the box's version and flags.
    size_t at = (d[0] == 0x03 || d[0] == 0x04) ? 0 : 4;
    Descriptor desc;
    if (!descriptorAt(d, n, at, desc))
        return {};
    if (desc.tag == 0x03) {
        // ES descriptor: ES_ID, flags, then the optional fields the flags announce.
        size_t q = desc.body + 3;
        const size_t limit = desc.body + desc.len;
        if (q > limit)
            return {};
        const uint8_t flags = d[desc.body + 2];
        if (flags & 0x80)
            q += 2;
        if (flags & 0x40) {
            if (q >= limit)
                return {};
            q += 1 + d[q];
        }
        if (flags & 0x20)
            q += 2;
        if (q > limit || !findChild(d, q, limit, 0x04, desc))
            return {};
    } else if (desc.tag != 0x04) {
        return {};
    }
    // Decoder config: object type, stream type, buffer size, two bit rates.
    if (desc.len < 13 || !wanted(d[desc.body]))
        return {};
    Descriptor info;
    if (!findChild(d, desc.body + 13, desc.body + desc.len, 0x05, info) || info.cut || info.len == 0)
        return {};
    return QByteArray(reinterpret_cast<const char*>(d + info.body), static_cast<int>(info.len));
}

bool isAacObjectType(uint8_t t) { return t == 0x40 || (t >= 0x66 && t <= 0x68); }

} // namespace

QByteArray AudioSpecificConfigFromEsds(const uint8_t* esds, size_t n)
{
    return decoderSpecificInfo(esds, n, isAacObjectType);
}

// ---- scanning helpers ------------------------------------------------------------

namespace {

constexpr size_t kScanBlock = 4u << 20;

size_t scanBlock(const ByteReader& r)
{
    return std::min(kScanBlock, r.maxView());
}

// First position in [from, end) holding b; end when none.
uint64_t findByte(ByteReader& r, uint64_t from, uint64_t end, uint8_t b)
{
    const size_t block = scanBlock(r);
    while (from < end) {
        size_t n = 0;
        const uint8_t* p = r.viewSome(from, static_cast<size_t>(std::min<uint64_t>(block, end - from)), n);
        if (const void* hit = memchr(p, b, n))
            return from + static_cast<uint64_t>(static_cast<const uint8_t*>(hit) - p);
        from += n;
    }
    return end;
}

// First position in [from, end) holding a byte other than zero; end when none.
uint64_t skipZeros(ByteReader& r, uint64_t from, uint64_t end)
{
    const size_t block = scanBlock(r);
    while (from < end) {
        size_t n = 0;
        const uint8_t* p = r.viewSome(from, static_cast<size_t>(std::min<uint64_t>(block, end - from)), n);
        const uint8_t* hit = std::find_if(p, p + n, [](uint8_t c) { return c != 0; });
        if (hit != p + n)
            return from + static_cast<uint64_t>(hit - p);
        from += n;
    }
    return end;
}

// ---- JPEG ------------------------------------------------------------------------

bool isFrameHeader(uint8_t m)
{
    return m >= 0xC0 && m <= 0xCF && m != 0xC4 && m != 0xC8 && m != 0xCC;
}

// Markers that may stand between two scans of one image: tables, restart
// interval, line count, comments and application data, and the next scan.
bool mayFollowScan(uint8_t m)
{
    return m == 0xC4 || m == 0xCC || (m >= 0xDA && m <= 0xDD) || (m >= 0xE0 && m <= 0xEF) || m == 0xFE;
}

// Markers with a length: all but SOI, EOI, the restart markers and TEM.
bool hasLength(uint8_t m)
{
    return m >= 0xC0 && m <= 0xFE && !(m >= 0xD0 && m <= 0xD9);
}

// Where the JPEG image at pos ends (behind its EOI); 0 when none ends before end.
uint64_t jpegImageEnd(ByteReader& r, uint64_t pos, uint64_t end)
{
    if (end - pos < 4 || r.be16(pos) != 0xFFD8)
        return 0;
    uint64_t q = pos + 2;
    bool frame = false;
    bool scanned = false;
    for (;;) {
        if (q + 2 > end || r.u8(q) != 0xFF)
            return 0;
        while (q + 2 < end && r.u8(q + 1) == 0xFF)   // fill bytes before the marker
            ++q;
        const uint8_t m = r.u8(q + 1);
        if (m == 0xD9)
            return scanned ? q + 2 : 0;
        if (!hasLength(m) || (scanned && !mayFollowScan(m)) || q + 4 > end)
            return 0;
        const uint32_t len = r.be16(q + 2);
        if (len < 2 || len > end - q - 2)
            return 0;
        if (isFrameHeader(m)) {
            // One frame header: precision, height, width, components (3 bytes each).
            if (frame || len < 9 || len != 8 + 3u * r.u8(q + 9) || r.be16(q + 7) == 0)
                return 0;
            frame = true;
        }
        q += 2 + len;
        if (m != 0xDA)
            continue;
        // A scan: its header names 1..4 components of 2 bytes each, then the
        // entropy-coded data runs to the next marker that is not a stuffed
        // FF00 or a restart marker.
        const uint32_t components = r.u8(q - len + 2);
        if (!frame || components < 1 || components > 4 || len != 6 + 2 * components)
            return 0;
        for (;;) {
            const uint64_t a = findByte(r, q, end, 0xFF);
            if (a + 1 >= end)
                return 0;
            const uint8_t next = r.u8(a + 1);
            if (next == 0x00 || (next >= 0xD0 && next <= 0xD7)) {
                q = a + 2;
            } else if (next == 0xFF) {
                q = a + 1;
            } else {
                q = a;
                break;
            }
        }
        scanned = true;
    }
}

// ---- MPEG-4 visual ----------------------------------------------------------------

// How far the header start codes at the head of a sample may reach before its VOP.
constexpr uint64_t kHeaderRunLimit = 64u << 10;
constexpr uint64_t kNone = ~uint64_t(0);

bool startsSample(uint8_t code)
{
    return code <= 0x2F || code == 0xB0 || code == 0xB3 || code == 0xB5 || code == 0xB6;
}

// Codes met in the headers before a VOP: the sample starts and user data.
bool inHeaderRun(uint8_t code)
{
    return startsSample(code) || code == 0xB2;
}

// Position of the first start code prefix 00 00 01 at or after from whose code
// byte lies before end; end when none.
uint64_t findStartCode(ByteReader& r, uint64_t from, uint64_t end)
{
    if (end < 4 || from > end - 4)
        return end;
    const size_t block = scanBlock(r) - 2;
    // The view starts two bytes before q and holds two behind the positions
    // searched, so that every prefix starting in it is seen whole.
    uint64_t q = from + 2;
    const uint64_t last = end - 1;   // the 01 must leave room for the code byte
    while (q < last) {
        size_t got = 0;
        const uint8_t* base = r.viewSome(q - 2, static_cast<size_t>(std::min<uint64_t>(block, last - q)) + 2, got);
        if (got < 3)
            base = r.view(q - 2, got = 3);
        const size_t n = got - 2;
        const size_t at = NextStartCode(base, 0, n);
        if (at < n)
            return q - 2 + at;
        q += n;
    }
    return end;
}

// The VOP start code of the sample at pos, reached through its header start
// codes before limit; kNone when pos starts no sample.
uint64_t vopOfSample(ByteReader& r, uint64_t pos, uint64_t limit)
{
    if (limit < 4 || pos > limit - 4 || r.be24(pos) != 1)
        return kNone;
    uint64_t q = pos;
    uint8_t code = r.u8(q + 3);
    if (!startsSample(code))
        return kNone;
    while (code != 0xB6) {
        if (!inHeaderRun(code))
            return kNone;
        q = findStartCode(r, q + 4, limit);
        if (q >= limit)
            return kNone;
        code = r.u8(q + 3);
    }
    return q;
}

uint64_t headerRunLimit(ByteReader& r, uint64_t pos, uint64_t end)
{
    const uint64_t reach = pos + std::min(kHeaderRunLimit, ~uint64_t(0) - pos);
    return std::min({end, r.size(), reach});
}

} // namespace

uint64_t JpegSampleSize(ByteReader& r, uint64_t pos, uint64_t end, bool twoFields)
{
    end = std::min(end, r.size());
    if (pos >= end)
        return 0;
    const uint64_t first = jpegImageEnd(r, pos, end);
    if (!first)
        return 0;
    if (twoFields) {
        // The second field's image follows the first, at most behind a little
        // zero padding.
        constexpr uint64_t kMaxFieldPadding = 4096;
        const uint64_t next = skipZeros(r, first, std::min(end, first + kMaxFieldPadding));
        if (next < end)
            if (const uint64_t second = jpegImageEnd(r, next, end))
                return second - pos;
    }
    return first - pos;
}

uint64_t ProResSampleSize(ByteReader& r, uint64_t pos, uint64_t end)
{
    // Frame size, 'icpf', then the frame header: its size, version, creator,
    // width and height, flags and colour fields, 20 bytes at the least.
    constexpr uint32_t kMinHeader = 20;
    end = std::min(end, r.size());
    if (pos >= end || end - pos < 8 + kMinHeader || !r.is4cc(pos + 4, "icpf"))
        return 0;
    const uint32_t size = r.be32(pos);
    const uint32_t header = r.be16(pos + 8);
    if (header < kMinHeader || size < 8 + header || size > end - pos)
        return 0;
    if (r.be16(pos + 16) == 0 || r.be16(pos + 18) == 0)
        return 0;
    return size;
}

bool Mpeg4SampleStarts(ByteReader& r, uint64_t pos)
{
    return vopOfSample(r, pos, headerRunLimit(r, pos, r.size())) != kNone;
}

uint64_t Mpeg4NextSampleStart(ByteReader& r, uint64_t pos, uint64_t end)
{
    const uint64_t limit = std::min(end, r.size());
    const uint64_t vop = vopOfSample(r, pos, headerRunLimit(r, pos, limit));
    if (vop == kNone)
        return end;
    for (uint64_t q = vop + 4;; q += 3) {
        q = findStartCode(r, q, limit);
        if (q >= limit)
            return end;
        if (startsSample(r.u8(q + 3)))
            return q;
    }
}

bool Mpeg4IsKeyframe(ByteReader& r, uint64_t pos, uint64_t end)
{
    const uint64_t limit = headerRunLimit(r, pos, end);
    const uint64_t vop = vopOfSample(r, pos, limit);
    if (vop == kNone || vop + 4 >= limit)
        return false;
    return (r.u8(vop + 4) >> 6) == 0;
}

} // namespace syntax
