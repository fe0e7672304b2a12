// The NAL syntax reader against encoder-made clips: every unit valid, picture
// starts, key frames and presentation order as the tables say.
#include "recovery/syntax/media_scan.h"
#include "recovery/syntax/nal_syntax.h"
#include "support/test_videos.h"

#include <QtTest>
#include <algorithm>
#include <numeric>
#include <set>

using namespace testvideo;
using namespace syntax;

namespace {

// The body of the first box named fourcc at or after from, found by its name.
QByteArray BoxBody(const QByteArray& file, qint64 from, const char* fourcc)
{
    const qint64 at = file.indexOf(fourcc, int(from));
    return at < 4 ? QByteArray() : file.mid(int(at) + 4, int(readBe(file, at - 4, 4)) - 8);
}

std::vector<uint8_t> Bytes(const QByteArray& b) { return std::vector<uint8_t>(b.begin(), b.end()); }

// Bit writer for hand-made parameter sets.
struct Bits {
    QByteArray out;
    int acc = 0, n = 0;
    void u(quint32 v, int bits)
    {
        for (int i = bits - 1; i >= 0; --i) {
            acc = acc << 1 | int((v >> i) & 1);
            if (++n == 8) {
                out += char(acc);
                acc = n = 0;
            }
        }
    }
    void ue(quint32 v)
    {
        int len = 0;
        while ((quint64(v) + 1) >> (len + 1))
            ++len;
        u(0, len);
        u(v + 1, len + 1);
    }
    QByteArray done()
    {
        u(1, 1);
        while (n)
            u(0, 1);
        return out;
    }
};

QByteArray BaselineSps(quint32 id, quint32 log2FrameNumMinus4, quint32 pocType, quint32 widthMinus1)
{
    Bits b;
    b.u(0x6742001e, 32);   // header, profile 66, constraints, level 30
    b.ue(id);
    b.ue(log2FrameNumMinus4);
    b.ue(pocType);
    if (pocType == 0)
        b.ue(2);
    b.ue(1);           // max_num_ref_frames
    b.u(0, 1);
    b.ue(widthMinus1);
    b.ue(14);          // 15 map units high
    b.u(0xC, 4);       // frame_mbs_only, direct_8x8, no cropping, no VUI
    return b.done();
}

// pps 0 -> sps 0: CAVLC, one slice group, one reference each way, no weighting, deblocking control.
const QByteArray kPps = QByteArray::fromHex("68ce3c80");

// An IDR slice of the sane SPS: I, pps 0, frame_num 0, idr_pic_id 0, lsb 0.
QByteArray IdrSlice(quint32 firstMb)
{
    Bits b;
    b.u(0x65, 8);
    for (quint32 ue : {firstMb, 7u, 0u})   // first_mb_in_slice, slice_type, pps id
        b.ue(ue);
    b.u(0, 4);      // frame_num
    b.ue(0);        // idr_pic_id
    b.u(0, 6 + 2);  // pic_order_cnt_lsb, marking flags
    return b.done();
}

// The composition offsets of frames and their shift, as the movie gets them.
std::pair<std::vector<uint32_t>, uint32_t> Offsets(const RecordTable<VideoFrame>& frames)
{
    std::vector<uint32_t> off;
    const uint32_t shift = CompositionOffsets(frames, 0, nullptr);
    CompositionOffsets(frames, shift, [&](uint32_t o) { off.push_back(o); });
    return {off, shift};
}

} // namespace

class TestNalSyntax : public QObject {
    Q_OBJECT
private slots:
    void clipsReadAsTheirTablesSay_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("codecArgs");
        QTest::addColumn<int>("pocType");    // H.264 order count type the clip must use, -1 for HEVC
        QTest::addColumn<int>("needType");   // a unit type the clip must hold
        QTest::newRow("x264 defaults") << "nal_x264.mp4" << "-c:v libx264 -bf 3 -g 50" << 0 << 5;
        QTest::newRow("x264 pyramid, 4 slices, aud") << "nal_x264_slices.mov"
            << "-c:v libx264 -x264-params bframes=3:b-pyramid=normal:slices=4:aud=1:keyint=24" << 0 << 9;
        QTest::newRow("x264 baseline") << "nal_x264_base.mp4" << "-c:v libx264 -profile:v baseline -g 30" << 2 << 5;
        QTest::newRow("x264 interlaced") << "nal_x264_mbaff.mp4"
            << "-c:v libx264 -x264-params interlaced=1:bframes=2:keyint=40" << 0 << 5;
        QTest::newRow("x265 open gop") << "nal_x265_open.mov"
            << "-c:v libx265 -tag:v hvc1 -x265-params log-level=error:keyint=40:min-keyint=40:open-gop=1" << -1 << 21;
        QTest::newRow("x265 closed gop") << "nal_x265_closed.mp4"
            << "-c:v libx265 -x265-params log-level=error:keyint=30:min-keyint=30:open-gop=0:bframes=4" << -1 << 20;
    }
    void clipsReadAsTheirTablesSay()
    {
        QFETCH(QString, name);
        QFETCH(QString, codecArgs);
        QFETCH(int, pocType);
        QFETCH(int, needType);
        const NalCodec codec = pocType < 0 ? NalCodec::Hevc : NalCodec::H264;
        const QString path = make(name, lavfiVideo(4) + splitArgs(codecArgs + " -pix_fmt yuv420p"));
        QVERIFY(!path.isEmpty());
        const QByteArray file = readAll(path);
        const qint64 moov = findTopLevelAtom(file, "moov");
        QVERIFY(moov > 0);
        const QByteArray cfg = BoxBody(file, moov, codec == NalCodec::H264 ? "avcC" : "hvcC");
        NalSyntax syn;
        QVERIFY(syn.loadConfig(codec, reinterpret_cast<const uint8_t*>(cfg.constData()), size_t(cfg.size())));
        std::set<int> sync;
        const QByteArray stss = BoxBody(file, moov, "stss");
        for (quint32 k = 0; stss.size() >= 8 && k < readBe(stss, 4, 4); ++k)
            sync.insert(int(readBe(stss, 8 + 4 * k, 4)) - 1);

        QByteArray probe;
        QCOMPARE(run("ffprobe", splitArgs("-v error -select_streams v:0 -show_entries packet=pos,size,pts -of csv=p=0")
                                    << path, &probe), 0);
        PocTracker tracker(syn);
        std::vector<int64_t> pts;
        RecordTable<VideoFrame> frames;
        std::set<int> types;
        for (const QByteArray& line : probe.trimmed().split('\n')) {
            const QList<QByteArray> f = line.split(',');   // pts, size, pos
            QVERIFY(f.size() >= 3);
            const int i = int(pts.size());
            pts.push_back(f[0].toLongLong());
            qint64 at = f[2].toLongLong();
            const qint64 end = at + f[1].toLongLong();
            bool sawSlice = false;
            while (at + syn.lengthSize() <= end) {
                const int len = int(readBe(file, at, syn.lengthSize()));
                at += syn.lengthSize();
                QVERIFY(len > 0 && at + len <= end);
                const QByteArray unit = file.mid(int(at), len);
                at += len;
                const auto* p = reinterpret_cast<const uint8_t*>(unit.constData());
                syn.learnParameterSet(p, size_t(len));
                const NalInfo info = syn.inspect(p, std::min<size_t>(size_t(len), 64));
                QVERIFY2(info.valid, qPrintable(QString("sample %1 type %2").arg(i).arg(info.type)));
                types.insert(info.type);
                QVERIFY2(!(info.opensAccessUnit && sawSlice), qPrintable(QString("sample %1").arg(i)));
                if (!info.vcl)
                    continue;
                QCOMPARE(info.firstSliceOfPicture, !sawSlice);
                if (sawSlice)
                    continue;
                sawSlice = true;
                QVERIFY2(info.sliceHeaderOk, qPrintable(QString("sample %1").arg(i)));
                QCOMPARE(info.keyframe, sync.count(i) == 1);
                VideoFrame frame;
                frame.poc = tracker.next(info);
                frame.pocReset = info.pocReset;
                frames.push_back(frame);
                if (pocType >= 0)
                    QCOMPARE(syn.avcSps(info.spsId)->pocType, pocType);
            }
            QVERIFY(sawSlice && at == end);
        }
        QVERIFY(types.count(needType));
        QVERIFY(pts.size() >= 90);

        // The presentation order the counts give is the file's.
        const std::vector<uint32_t> off = Offsets(frames).first;
        std::vector<int> ours(pts.size()), theirs(pts.size());
        std::iota(ours.begin(), ours.end(), 0);
        std::iota(theirs.begin(), theirs.end(), 0);
        std::stable_sort(ours.begin(), ours.end(), [&](int a, int b) { return a + off[a] < b + off[b]; });
        std::stable_sort(theirs.begin(), theirs.end(), [&](int a, int b) { return pts[a] < pts[b]; });
        QCOMPARE(QVector<int>(ours.begin(), ours.end()), QVector<int>(theirs.begin(), theirs.end()));
        QCOMPARE(*std::min_element(off.begin(), off.end()), 0u);
    }

    void badParameterSetsRefused_data()
    {
        QTest::addColumn<QByteArray>("sps");
        QTest::addColumn<bool>("usable");
        QTest::newRow("sane") << BaselineSps(0, 0, 0, 19) << true;
        QTest::newRow("sps id 32") << BaselineSps(32, 0, 0, 19) << false;
        QTest::newRow("frame_num of 17 bits") << BaselineSps(0, 13, 0, 19) << false;
        QTest::newRow("order count type 3") << BaselineSps(0, 0, 3, 19) << false;
        QTest::newRow("100001 macroblocks wide") << BaselineSps(0, 0, 0, 100000) << false;
        QTest::newRow("cut") << BaselineSps(0, 0, 0, 19).left(5) << false;
    }
    void badParameterSetsRefused()
    {
        QFETCH(QByteArray, sps);
        QFETCH(bool, usable);
        const QByteArray avcC = QByteArray::fromHex("0142001eff") + char(0xE1) + char(0) + char(sps.size()) + sps
                                + char(1) + char(0) + char(kPps.size()) + kPps;
        NalSyntax syn;
        std::vector<uint8_t> b = Bytes(avcC);
        QCOMPARE(syn.loadConfig(NalCodec::H264, b.data(), b.size()), usable);
        QCOMPARE(syn.lengthSize(), 4);
        for (int cut = 0; cut < avcC.size(); ++cut) {   // every cut record is refused
            b = Bytes(avcC.left(cut));
            QVERIFY(!syn.loadConfig(NalCodec::H264, b.data(), b.size()));
        }
        b = Bytes(avcC);
        b[4] = 0xFE;   // three-byte lengths
        QVERIFY(!syn.loadConfig(NalCodec::H264, b.data(), b.size()));

        // IDR slices, the last one beyond the 20x15 picture: usable only against the sane SPS.
        b = Bytes(avcC);
        syn.loadConfig(NalCodec::H264, b.data(), b.size());
        for (quint32 firstMb : {0u, 299u, 300u}) {
            b = Bytes(IdrSlice(firstMb));
            const NalInfo info = syn.inspect(b.data(), b.size());
            QVERIFY(info.valid && info.keyframe && info.firstSliceOfPicture == (firstMb == 0));
            QCOMPARE(info.sliceHeaderOk, usable && firstMb < 300);
        }
    }

    void offsetsFollowTheCounts_data()
    {
        QTest::addColumn<QVector<qint64>>("poc");
        QTest::addColumn<QVector<bool>>("reset");
        QTest::addColumn<QVector<uint>>("offsets");
        QTest::addColumn<uint>("shift");
        QTest::newRow("pyramid") << QVector<qint64>{0, 8, 4, 2, 6} << QVector<bool>(5, false)
                                 << QVector<uint>{2, 5, 2, 0, 1} << 2u;
        QTest::newRow("two runs") << QVector<qint64>{0, 4, 2, 0, 4, 2}
                                  << QVector<bool>{true, false, false, true, false, false}
                                  << QVector<uint>{1, 2, 0, 1, 2, 0} << 1u;
        QTest::newRow("ties in decode order") << QVector<qint64>{0, 4, 4, 2, 2} << QVector<bool>(5, false)
                                              << QVector<uint>{2, 4, 4, 0, 0} << 2u;
        QTest::newRow("three runs") << QVector<qint64>{4, 0, 0, 6, 2, 4, 2, 0}
                                    << QVector<bool>{true, false, true, false, false, false, false, true}
                                    << QVector<uint>{3, 1, 2, 5, 1, 2, 0, 2} << 2u;
        QTest::newRow("in order") << QVector<qint64>{0, 2, 4} << QVector<bool>(3, false)
                                  << QVector<uint>{0, 0, 0} << 0u;
    }
    void offsetsFollowTheCounts()
    {
        QFETCH(QVector<qint64>, poc);
        QFETCH(QVector<bool>, reset);
        QFETCH(QVector<uint>, offsets);
        QFETCH(uint, shift);
        // Blocks of three pictures on disk: runs cross their edges.
        QTemporaryDir dir;
        RecordTable<VideoFrame> frames(dir.filePath(QStringLiteral(".syntax-x.video")), 3 * sizeof(VideoFrame));
        for (int i = 0; i < poc.size(); ++i) {
            VideoFrame f;
            f.poc = poc[i];
            f.pocReset = reset[i];
            frames.push_back(f);
        }
        QVERIFY(frames.seal());
        const auto got = Offsets(frames);
        QCOMPARE(QVector<uint>(got.first.begin(), got.first.end()), offsets);
        QCOMPARE(uint(got.second), shift);
    }
};

QTEST_GUILESS_MAIN(TestNalSyntax)
#include "test_nal_syntax.moc"
