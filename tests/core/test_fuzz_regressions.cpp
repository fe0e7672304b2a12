// Every input the fuzzers once broke the engine with, plus a few hostile
// shapes per route, through the driver with the fuzz harness's checks.
#include "fuzz_harness.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {
void Feed(const QByteArray& bytes, const FuzzOptions& options)
{
    FuzzThroughDriver(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()), options);
}
}

class TestFuzzRegressions : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { FuzzSetUp(); }

    void keptInputs()
    {
        QDir root(QStringLiteral(REELWRIGHT_FUZZ_DIR "/regressions"));
        int count = 0;
        for (const QString& route : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            FuzzOptions options;
            QVERIFY2(FuzzOptionsForRoute(route, options), qPrintable(route));
            QDir dir(root.filePath(route));
            for (const QString& name : dir.entryList(QDir::Files)) {
                QFile f(dir.filePath(name));
                QVERIFY(f.open(QIODevice::ReadOnly));
                Feed(f.readAll(), options);
                ++count;
            }
        }
        QVERIFY(count > 0);
    }

    void hostileShapes_data()
    {
        QTest::addColumn<QString>("route");
        for (const char* r : {"mov", "mov-reference", "avi", "avi-reference", "wmv", "wmv-reference", "flv",
                              "mts", "mkv", "mkv-reference", "mpg", "mpg-reference"})
            QTest::newRow(r) << QString::fromLatin1(r);
    }
    void hostileShapes()
    {
        QFETCH(QString, route);
        FuzzOptions options;
        QVERIFY(FuzzOptionsForRoute(route, options));
        QByteArray noise(200000, '\0');
        quint32 x = 99;
        for (char& c : noise)
            c = char((x = x * 1664525u + 1013904223u) >> 24);
        // Empty, tiny, flat and random files, and headers that claim huge sizes right at the start.
        for (const QByteArray& in : {QByteArray(), QByteArray(7, '\0'), QByteArray(70000, '\xFF'), QByteArray(70000, '\0'), noise,
                                     QByteArray::fromHex("ffffffff6d6f6f76ffffffff6d766864") + QByteArray(100, '\x01'),
                                     QByteArray("RIFF\xff\xff\xff\xff" "AVI LIST\xff\xff\xff\xff" "hdrlavih", 28) + QByteArray(5000, '\x7f'),
                                     QByteArray::fromHex("1a45dfa3ffffffffffffffff") + QByteArray(4000, '\xff'),
                                     QByteArray("FLV\x01\x05\x00\x00\x00\x09", 9) + QByteArray(4000, '\xff')})
            Feed(in, options);
    }
};

QTEST_GUILESS_MAIN(TestFuzzRegressions)
#include "test_fuzz_regressions.moc"
