// Drives the main window through its first views and saves each as a PNG:
//   window_screenshots [--language N] [--scale S] OUTDIR VIDEO...
// N is a LanguageType (0 English, 1 German, 5 Japanese, 10 Hindi...), S the
// display scale the window is laid out and skinned for (1.0 when not given).
// page1-empty.png (no files), page1-files.png (VIDEO... added through the
// file-chooser seam), page2-results.png (after a finished run). Run it under
// a real display server (xvfb-run) to see what a user sees.
#include "core/repair_globals.h"
#include "shell/languages.h"
#include "core/platform_core.h"
#include "shell/scale.h"
#include "shell/startup.h"
#include "workspace/about_dlg.h"
#include "workspace/advanced_repair_dlg.h"
#include "workspace/close_application_dlg.h"
#include "workspace/file_dialogs.h"
#include "workspace/reference_file_dlg.h"
#include "workspace/reference_repaired_dlg.h"
#include "workspace/save_dlg.h"
#include "workspace/my_tree_widget.h"
#include "workspace/stop_dlg.h"
#include "workspace/video_repair_window.h"
#include "workspace/workspace_globals.h"

#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTextEdit>
#include <QToolTip>
#include <QTreeWidget>

#include <QApplication>
#include <QSettings>
#include <QDir>
#include <QTimer>
#include <cstdio>

namespace {

class ListedFiles : public FileDialogs {
public:
    explicit ListedFiles(QStringList files) : m_files(std::move(files)) {}
    QStringList getOpenFileNames(QWidget*, const QString&, const QString&, const QString&) override
    {
        return m_files;
    }
    QString getOpenFileName(QWidget*, const QString&, const QString&, const QString&) override { return {}; }
    QString getExistingDirectory(QWidget*, const QString&, const QString&) override { return {}; }

private:
    QStringList m_files;
};

bool Save(QWidget* w, const QString& path)
{
    const bool ok = w->grab().save(path);
    std::printf("%s %s\n", ok ? "saved" : "FAILED", qPrintable(path));
    return ok;
}

} // namespace

int main(int argc, char** argv)
{
    // Options first: the scale sets the font resolution before the toolkit starts.
    int language = 0;
    float scale = 1.0f;
    int first = 1;
    for (; first + 1 < argc && argv[first][0] == '-' && argv[first][1] == '-'; first += 2) {
        if (qstrcmp(argv[first], "--language") == 0)
            language = QByteArray(argv[first + 1]).toInt();
        else if (qstrcmp(argv[first], "--scale") == 0)
            scale = QByteArray(argv[first + 1]).toFloat();
    }
    qputenv("QT_FONT_DPI", FontDpiText(scale));
    QCoreApplication::setAttribute(Qt::AA_DisableHighDpiScaling);
    QApplication app(argc, argv);
    const QStringList args = app.arguments().mid(first);
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: window_screenshots OUTDIR VIDEO...\n");
        return 2;
    }
    const QString out = args.first();
    QDir().mkpath(out);
    g_dpiScale = g_uiScale = scale;
    g_settingsPath = SettingsFilePath(SettingsStore::PhotoRecovery);
    // The translations are deployed beside the program, in bin/.
    g_programDir = QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/../bin")).absolutePath();
    QSettings(g_settingsPath, QSettings::IniFormat).setValue(QStringLiteral("LanguageType"), language);
    g_languageType = language;
    SelectTranslators(language);
    g_appDir = QDir(g_programDir + QStringLiteral("/../bin/Libmp4")).absolutePath();

    VideoRepairWindow window;
    window.SetFileDialogs(std::make_unique<ListedFiles>(args.mid(1)));
    window.move(40, 40);
    window.show();

    int failures = 0;
    static auto settle = [](int ms) {
        QEventLoop loop;
        QTimer::singleShot(ms, &loop, &QEventLoop::quit);
        loop.exec();
    };
    settle(600);   // toolbar animation and first paint
    failures += !Save(&window, out + QStringLiteral("/page1-empty.png"));

    window.OnAddMOVFile();
    settle(300);
    failures += !Save(&window, out + QStringLiteral("/page1-files.png"));

    // The end of a run shows a modal message; close it as a user would, then
    // take the page behind it.
    bool finished = false;
    QObject::connect(&window.repairThread(), &ThreadVideoRepair::RepairFinish, &window, [&] { finished = true; },
                     Qt::QueuedConnection);
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [&] {
        if (QWidget* modal = QApplication::activeModalWidget()) {
            if (finished) {
                Save(modal, out + QStringLiteral("/page2-finish-dialog.png"));
                modal->close();
                closer.stop();
                QTimer::singleShot(400, [&] {
                    failures += !Save(&window, out + QStringLiteral("/page2-results.png"));
                    // The figures of the first result, as its tooltip shows them.
                    QTreeWidget* results = window.resultList();
                    if (QTreeWidgetItem* first = results->topLevelItem(0)) {
                        const QRect cell = results->visualItemRect(first);
                        QToolTip::showText(results->viewport()->mapToGlobal(cell.center()), first->toolTip(8),
                                           results);
                        settle(400);
                        const QRect area(window.frameGeometry().topLeft(), window.size() + QSize(200, 0));
                        failures += !QGuiApplication::primaryScreen()
                                         ->grabWindow(0, area.x(), area.y(), area.width(), area.height())
                                         .save(out + QStringLiteral("/page2-figures.png"));
                        QToolTip::hideText();
                    }
                    // The dialogs of page 2, shown without their loops.
                    const auto shoot = [&](QWidget* dialog, const char* name) {
                        dialog->show();
                        settle(200);
                        failures += !Save(dialog, out + QStringLiteral("/dialog-%1.png").arg(QLatin1String(name)));
                        dialog->hide();
                    };
                    AdvancedRepairDlg advanced(&window, args.value(1));
                    shoot(&advanced, "advance-repair");
                    g_referenceDlg->ResetForNewSample();
                    g_referenceDlg->RefPath_Edit->setText(QStringLiteral("/home/user/Videos/sample_from_camera.mov"));
                    g_referenceDlg->RefRepairBtn->setEnabled(true);
                    g_referenceDlg->refe_CheckBox->setEnabled(true);
                    shoot(g_referenceDlg, "sample");
                    window.saveDlg()->Reset();
                    window.saveDlg()->customLoc->click();
                    window.saveDlg()->RefPath_Edit->setText(QStringLiteral("/home/user/Saved videos"));
                    shoot(window.saveDlg(), "save");
                    window.doneDlg()->setText(QObject::tr("Repaired files saved successfully."));
                    shoot(window.doneDlg(), "done");
                    shoot(window.aboutDlg(), "about");
                    window.closeDlg()->setText(QObject::tr("Are you sure you want to exit?"));
                    shoot(window.closeDlg(), "exit");
                    StopDlg stop(&window);
                    stop.SetTexts(QObject::tr("Do you want to stop the current process?"), QString());
                    shoot(&stop, "stop");
                    app.quit();
                });
            }
        }
    });
    closer.start(50);
    QTimer::singleShot(120000, [&] {
        std::fprintf(stderr, "the run did not finish in time\n");
        ++failures;
        app.quit();
    });
    window.RepairBtn->click();
    app.exec();
    return failures == 0 ? 0 : 1;
}
