#include "shell/languages.h"

#include "core/repair_globals.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTranslator>

// The toolkit files are named in lower case on disk, and asked for so: this
// platform's file names are case-sensitive. Hindi's file is qt_he by name.
const LanguageRow kLanguages[kLanguageCount] = {
    {"English", "EN", "qt_en", "EN"},
    {"German", "DE", "qt_de", "GR"},
    {"French", "FR", "qt_fr", "FR"},
    {"Italian", "IT", "qt_it", "IT"},
    {"Spanish", "ES", "qt_es", "ES"},
    {"Japanese", "JA", "qt_ja", "JN"},
    {"Chinese", "CN", "qt_zh_cn", "CN"},
    {"Korean", "KO", "qt_ko", "KO"},
    {"Dutch", "DU", "qt_du", "DU"},
    {"Portuguese Brazil", "BR", "qt_po", "BR"},
    {"Hindi", "HI", "qt_he", "HI"},
};

bool g_languageFlags[kLanguageCount] = {true};

namespace {

// A pair per language, made on first use; all live for the process.
QTranslator* AppTranslator(int language)
{
    static QTranslator* pairs[kLanguageCount] = {};
    if (!pairs[language])
        pairs[language] = new QTranslator(QCoreApplication::instance());
    return pairs[language];
}

QTranslator* QtTranslator(int language)
{
    static QTranslator* pairs[kLanguageCount] = {};
    if (!pairs[language])
        pairs[language] = new QTranslator(QCoreApplication::instance());
    return pairs[language];
}

} // namespace

int LanguageRowFor(int languageType)
{
    return languageType >= 0 && languageType <= 9 ? languageType : 10;
}

void SetLanguageFlag(int languageType)
{
    for (bool& flag : g_languageFlags)
        flag = false;
    g_languageFlags[LanguageRowFor(languageType)] = true;
}

int CurrentLanguage()
{
    for (int i = 0; i < kLanguageCount; ++i)
        if (g_languageFlags[i])
            return i;
    return 0;
}

QString TranslationFolder(int language)
{
    // Beside the program when it runs from the build; under share/ once installed.
    const QString own = g_programDir + QStringLiteral("/VideoTranslation/");
    const QString folder = QFileInfo(own).isDir() ? own : g_programDir + QStringLiteral("/../share/reelwright/VideoTranslation/");
    return QDir::cleanPath(folder + QLatin1String(kLanguages[language].code));
}

void SelectTranslators(int languageType)
{
    SetLanguageFlag(languageType);
    const int language = CurrentLanguage();
    const QString folder = TranslationFolder(language);
    // Load results are not examined: a missing file leaves the English texts.
    AppTranslator(language)->load(QStringLiteral("LANG_") + QLatin1String(kLanguages[language].code), folder);
    QCoreApplication::installTranslator(AppTranslator(language));
    QtTranslator(language)->load(QLatin1String(kLanguages[language].qtFile), folder);
    QCoreApplication::installTranslator(QtTranslator(language));
}

void InstallLanguage(int language)
{
    for (int i = 0; i < kLanguageCount; ++i) {
        QCoreApplication::removeTranslator(AppTranslator(i));
        QCoreApplication::removeTranslator(QtTranslator(i));
    }
    const QString folder = TranslationFolder(language);
    QtTranslator(language)->load(QLatin1String(kLanguages[language].qtFile), folder);
    QCoreApplication::installTranslator(QtTranslator(language));
    AppTranslator(language)->load(QStringLiteral("LANG_") + QLatin1String(kLanguages[language].code), folder);
    QCoreApplication::installTranslator(AppTranslator(language));
}
