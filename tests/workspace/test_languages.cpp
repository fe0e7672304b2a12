// The languages and the skin: catalogues, a switch at run time that keeps
// the page's state, the first start, and the images each scale asks for.
#include "window_fixture.h"

#include "shell/languages.h"
#include "shell/startup.h"
#include "workspace/close_application_dlg.h"
#include "workspace/custom_button.h"
#include "workspace/my_tree_widget.h"
#include "workspace/reference_repaired_dlg.h"
#include "workspace/save_dlg.h"
#include "workspace/skin.h"

#include <QAction>
#include <QImage>
#include <QMenu>
#include <QRegularExpression>
#include <QSettings>
#include <QTranslator>
#include <QXmlStreamReader>

class TestLanguages : public QObject {
    Q_OBJECT

    QString m_config;
    VideoRepairWindow* m_window = nullptr;

    int storedLanguage(SettingsStore store) const
    {
        return QSettings(SettingsFilePath(store), QSettings::IniFormat).value(QStringLiteral("LanguageType"), -1).toInt();
    }
    // The toolkit posts LanguageChange to the windows; let it arrive.
    static void deliver() { QCoreApplication::sendPostedEvents(nullptr, QEvent::LanguageChange); }
    QString german(const char* context, const char* text) const
    {
        QTranslator t;
        t.load(QStringLiteral("LANG_DE"), QStringLiteral(REELWRIGHT_BIN_DIR "/VideoTranslation/DE"));
        return t.translate(context, text);
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_config = fixture::UseFreshSettings(QStringLiteral("lang-config"));
        g_programDir = QStringLiteral(REELWRIGHT_BIN_DIR);
    }
    void cleanupTestCase() { QDir(m_config).removeRecursively(); }
    void init()
    {
        QFile::remove(SettingsFilePath(SettingsStore::PhotoRecovery));
        QFile::remove(SettingsFilePath(SettingsStore::DataRecovery));
        g_uiScale = 1.0f;
        g_repairRunning = g_referenceMode = false;
        SelectTranslators(0);
        m_window = new VideoRepairWindow;
        m_window->show();
    }
    void cleanup()
    {
        InstallLanguage(0);
        delete m_window;
        g_repairRunning = g_referenceMode = false;
    }

    // Every catalogue: the right language, no unfinished or empty entry, the
    // same %n as its source, and (but for English) mostly words of its own.
    void catalogsAreComplete()
    {
        const QMap<QString, QString> languages = {
            {"EN", "en"}, {"DE", "de"}, {"FR", "fr"}, {"IT", "it"}, {"ES", "es"}, {"JA", "ja"},
            {"CN", "zh_CN"}, {"KO", "ko"}, {"DU", "nl"}, {"BR", "pt_BR"}, {"HI", "hi"}};
        for (auto it = languages.begin(); it != languages.end(); ++it) {
            QFile file(QStringLiteral(REELWRIGHT_SOURCE_DIR "/translations/LANG_%1.ts").arg(it.key()));
            QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
            QXmlStreamReader xml(&file);
            QString source;
            int messages = 0, copies = 0;
            while (!xml.atEnd()) {
                if (xml.readNext() != QXmlStreamReader::StartElement)
                    continue;
                const QString where = it.key() + QStringLiteral(": ") + source;
                if (xml.name() == QLatin1String("TS")) {
                    QCOMPARE(xml.attributes().value(QStringLiteral("language")).toString(), it.value());
                } else if (xml.name() == QLatin1String("source")) {
                    source = xml.readElementText();
                } else if (xml.name() == QLatin1String("translation")) {
                    QVERIFY2(xml.attributes().value(QStringLiteral("type")).isEmpty(), qPrintable(where));
                    const QString t = xml.readElementText(QXmlStreamReader::IncludeChildElements);
                    ++messages;
                    copies += t == source;
                    QVERIFY2(!t.trimmed().isEmpty(), qPrintable(where));
                    QCOMPARE(t.contains(QLatin1String("%n")), source.contains(QLatin1String("%n")));
                }
            }
            QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
            QVERIFY(messages > 100);
            if (it.key() != QLatin1String("EN"))
                QVERIFY2(copies * 5 < messages, qPrintable(it.key()));   // symbols, the name and a few shared words stay
            QVERIFY2(QFile::exists(QStringLiteral(REELWRIGHT_BIN_DIR "/VideoTranslation/%1/LANG_%1.qm").arg(it.key())),
                     qPrintable(it.key()));
        }
        QCOMPARE(german("VideoRepairWindow", "Repair"), QStringLiteral("Reparieren"));
    }

    void firstStartShowsEnglish()
    {
        QCOMPARE(storedLanguage(SettingsStore::PhotoRecovery), -1);
        QCOMPARE(CurrentLanguage(), 0);
        QCOMPARE(m_window->RepairBtn->text(), QStringLiteral("Repair"));
        const QList<QAction*> entries = m_window->languageMenu(1)->actions();
        for (QAction* a : entries)
            QCOMPARE(a->isChecked(), a == entries.first());
        // Outside 0 to 9 a stored value means Hindi.
        QCOMPARE(LanguageRowFor(42), 10);
        QCOMPARE(LanguageRowFor(9), 9);
    }

    // A switch writes both stores, ticks its menu and retranslates at once;
    // Japanese and Korean from the second menu tick the first.
    void switchStoresTicksAndRetranslates()
    {
        m_window->languageMenu(1)->actions().at(1)->trigger();
        deliver();
        QCOMPARE(storedLanguage(SettingsStore::PhotoRecovery), 1);
        QCOMPARE(storedLanguage(SettingsStore::DataRecovery), 1);
        QVERIFY(g_languageFlags[1]);
        QVERIFY(m_window->languageMenu(1)->actions().at(1)->isChecked());
        QCOMPARE(m_window->RepairBtn->text(), QStringLiteral("Reparieren"));
        QCOMPARE(m_window->AbutBtn_1->text(), QString());   // the icon speaks; retranslateUi put no word back
        QCOMPARE(m_window->saveDlg()->Save->text(), QStringLiteral("Speichern"));
        QEvent change(QEvent::LanguageChange);   // the exit question's plain text comes back in the new words
        m_window->closeDlg()->setText(QStringLiteral("a question of the last run"));
        QCoreApplication::sendEvent(m_window->closeDlg(), &change);
        QCOMPARE(m_window->closeDlg()->text(), QStringLiteral("Möchten Sie das Programm wirklich beenden?"));
        QCOMPARE(m_window->doneDlg()->findChild<QLabel*>()->text(), QStringLiteral("Videodatei erfolgreich repariert!"));

        m_window->LoadJapaneseLanguages2();
        deliver();
        QVERIFY(m_window->languageMenu(1)->actions().at(5)->isChecked());
        QVERIFY(!m_window->languageMenu(1)->actions().at(1)->isChecked());
        QCOMPARE(m_window->RepairBtn->text(), QStringLiteral("修復"));
    }

    // During a run the headline stays the run's, in the new language.
    void switchDuringARunKeepsTheHeadline()
    {
        g_repairRunning = true;
        m_window->LoadGermanLanguages();
        deliver();
        QCOMPARE(m_window->stringLabl->text(), german("VideoRepairWindow", "Repairing selected videos"));
        g_referenceMode = true;
        m_window->LoadFrenchLanguages2();
        deliver();
        QCOMPARE(m_window->stringLabl->text(), QStringLiteral("Réparation avancée en cours"));
    }

    // Rows awaiting Advance Repair stay so; only their words change.
    void switchKeepsRowStates()
    {
        MyTreeWidget* list = m_window->resultList();
        list->setColumnCount(14);
        auto addRow = [&](const char* verdict, const QString& status, const QString& action) {
            auto* row = new QTreeWidgetItem(list);
            row->setText(W::ResVerdict, QLatin1String(verdict));
            row->setText(W::ResStatus, status);
            auto* button = new CustomButton(list);
            button->setText(action);
            list->setItemWidget(row, W::ResAction, button);
            return row;
        };
        QTreeWidgetItem* waiting = addRow("0", QStringLiteral("Awaiting Action"), QStringLiteral("Advance Repair"));
        QTreeWidgetItem* done = addRow("1", QStringLiteral("Completed"), QStringLiteral("Preview"));
        const QDateTime when(QDate(2026, 11, 25), QTime(8, 56, 53));
        done->setData(W::ResSize, Qt::UserRole, qint64(1500000));
        done->setData(W::ResModified, Qt::UserRole, when);
        auto button = [&](QTreeWidgetItem* row) {
            return qobject_cast<CustomButton*>(list->itemWidget(row, W::ResAction))->text();
        };

        m_window->LoadGermanLanguages();
        deliver();
        QCOMPARE(waiting->text(W::ResStatus), QStringLiteral("Aktion nötig"));
        QCOMPARE(button(waiting), QStringLiteral("Tiefenrep."));
        QCOMPARE(waiting->foreground(W::ResStatus).color(), QColor(Qt::blue));
        QCOMPARE(waiting->text(W::ResVerdict), QStringLiteral("0"));
        // Sizes, dates and a result's figures in German words and conventions.
        QCOMPARE(done->text(W::ResSize), QStringLiteral("1,43"));
        QCOMPARE(done->text(W::ResModified), QStringLiteral("25.11.26 08:56"));
        QCOMPARE(VideoRepairWindow::FiguresText(9876, 395.4, 1234),
                 QStringLiteral("9.876 Bilder · 6 min 35 s Ton · 1.234 beschädigte Bytes übersprungen"));
        QCOMPARE(list->headerItem()->text(W::ResName), QStringLiteral(" Dateiname"));

        m_window->LoadEnglishLanguages2();
        deliver();
        QCOMPARE(waiting->text(W::ResStatus), QStringLiteral("Awaiting Action"));
        QCOMPARE(button(waiting), QStringLiteral("Advance Repair"));
        // English sizes in MiB: thousands with a comma, hundredths cut, not rounded up.
        const QLocale en(QLocale::English, QLocale::UnitedStates);
        QCOMPARE(done->text(W::ResSize), QStringLiteral("1.43"));
        QCOMPARE(W::FormatSize(1610612736, en) + ' ' + W::FormatSize(1048575, en), QStringLiteral("1,536 0.99"));
    }

    // Every image any sheet names exists in its set; sizes follow the scale.
    void everyImageExistsInEverySet()
    {
        const QRegularExpression url(QStringLiteral("url\\((:/images/[^)]+)\\)"));
        QSet<QString> paths;
        for (const QString& sheet : skin::AllSheetsAndPaths())
            for (auto m = url.globalMatch(sheet); m.hasNext();)
                paths.insert(m.next().captured(1));
        QVERIFY(paths.size() > 100);
        for (const QString& path : paths)
            QVERIFY2(QFile::exists(path), qPrintable(path));
        for (SkinSet set : {SkinSet::Dpi96, SkinSet::Dpi125, SkinSet::Dpi144})
            QVERIFY(QFile::exists(skin::TitleIconPath(set)));
        QCOMPARE(QImage(QStringLiteral(":/images/144-DPI/Repair.png")).size(), QSize(210, 60));
    }

    // The window picks its sheets by scale: 1.5 the 144-dpi set, 1.145 none.
    // A window too big for the screen (offscreen: 800 x 600) steps down to 1.0.
    void windowSkinFollowsTheScale()
    {
        delete m_window;
        g_uiScale = 1.5f;
        m_window = new VideoRepairWindow;
        QCOMPARE(g_uiScale, 1.0f);
        QCOMPARE(m_window->size(), QSize(850, 600));
        QVERIFY(m_window->RepairBtn->styleSheet().contains(QLatin1String(":/images/96-DPI/Repair.png")));

        g_uiScale = 1.5f;
        m_window->ApplySkin();
        m_window->ApplyLanguageLayout();
        QVERIFY(m_window->RepairBtn->styleSheet().contains(QLatin1String(":/images/144-DPI/Repair.png")));
        QCOMPARE(m_window->RepairBtn->geometry(), QRect(int(687 * 1.5f), int(536 * 1.5f), 210, 60));

        g_uiScale = 110.0f / 96.0f;
        m_window->ApplySkin();
        QVERIFY(m_window->RepairBtn->styleSheet().isEmpty());
        QVERIFY(m_window->styleSheet().isEmpty());
        g_uiScale = 1.0f;
    }
};

QTEST_MAIN(TestLanguages)
#include "test_languages.moc"
