// The display scale: the step-down table, the fit of the main window, the image set.
#include "shell/scale.h"

#include <QtTest>
#include <limits>

class TestScale : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void stepDown()
    {
        const float nan = std::numeric_limits<float>::quiet_NaN();
        const QList<QPair<float, float>> cases = {
            {1.1f, 1.0f}, {1.25f, 1.0f}, {1.3f, 1.25f}, {1.5f, 1.25f}, {2.0f, 1.75f}, {3.6f, 3.5f},
            {4.9f, 4.75f}, {5.0f, 4.75f}, {0.0f, 1.0f}, {1.0f, 0.0f}, {0.5f, 0.0f}, {-2.0f, 0.0f},
            {5.01f, 0.0f}, {nan, 0.0f}};
        for (const auto& c : cases)
            QVERIFY2(StepDownScale(c.first) == c.second,
                     qPrintable(QStringLiteral("%1 -> %2").arg(c.first).arg(StepDownScale(c.first))));
    }

    void fit()
    {
        // 192 dpi on 1366 x 728: 2.0, 1.75, 1.5 (900 > 728), 1.25 (750 > 728), 1.0.
        QCOMPARE(FitScale(192, 1366, 728), 1.0f);
        QCOMPARE(FitScale(120, 1920, 1080), 1.25f);
        QCOMPARE(FitScale(192, 3840, 2160), 2.0f);
        QCOMPARE(FitScale(192, 1920, 1040), 1.5f);   // 900 <= 1040, 1275 <= 1920
        QCOMPARE(FitScale(96, 800, 500), 1.0f);      // 1.0 is kept even when it doesn't fit
        QCOMPARE(FitScale(72, 1920, 1080), 0.75f);   // a small scale that fits is kept
        QCOMPARE(FitScale(72, 600, 400), 1.0f);      // one that doesn't steps to 0.0, then 1.0
    }

    // Exact steps 1.0 and 1.25, everything from 1.5 up, nothing between.
    void skinSetByScale()
    {
        QCOMPARE(SkinSetFor(1.0f), SkinSet::Dpi96);
        QCOMPARE(SkinSetFor(1.25f), SkinSet::Dpi125);
        QCOMPARE(SkinSetFor(1.5f), SkinSet::Dpi144);
        QCOMPARE(SkinSetFor(1.75f), SkinSet::Dpi144);
        QCOMPARE(SkinSetFor(110.0f / 96.0f), SkinSet::None);   // 1.145...
        QCOMPARE(SkinSetFor(1.2f), SkinSet::None);
        QCOMPARE(SkinSetFor(0.75f), SkinSet::None);
    }

    // A window on a smaller work area steps down until it fits; 1.0 stays.
    void fitToArea()
    {
        QCOMPARE(FitScaleToArea(2.0f, 850, 600, 1366, 728), 1.0f);
        QCOMPARE(FitScaleToArea(2.0f, 850, 600, 1920, 1040), 1.5f);
        QCOMPARE(FitScaleToArea(1.75f, 850, 600, 1600, 1100), 1.75f);
        QCOMPARE(FitScaleToArea(110.0f / 96.0f, 850, 600, 1920, 1080), 110.0f / 96.0f);
        QCOMPARE(FitScaleToArea(110.0f / 96.0f, 850, 600, 900, 600), 1.0f);
        QCOMPARE(FitScaleToArea(1.0f, 850, 600, 640, 480), 1.0f);
    }
};

QTEST_GUILESS_MAIN(TestScale)
#include "test_scale.moc"
