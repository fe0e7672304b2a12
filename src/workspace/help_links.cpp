#include "workspace/help_links.h"

#include "core/repair_globals.h"
#include "core/platform_core.h"
#include "shell/startup.h"
#include "workspace/workspace_globals.h"

#include <QFileInfo>
#include <QSettings>

namespace {

// Our help lives under one folder per language; the topic names the page.
const char kHelpBase[] = "https://www.corvanelabs.com/help/reelwright/";
const char kSupportLink[] = "https://www.corvanelabs.com/support/";

// Indexed by LanguageType (0 English ... 10 Hindi).
const char* const kHelpLanguages[] = {"en", "de", "fr", "it", "es", "jp", "cn", "ko", "nl", "pt", "hi"};
const char* const kKeyLanguages[] = {"EN", "DE", "FR", "IT", "ES", "JA", "CN", "KO", "DU", "BR", "HI"};
constexpr int kLanguages = int(sizeof kHelpLanguages / sizeof kHelpLanguages[0]);

bool KnownLanguage(int languageType)
{
    return languageType >= 0 && languageType < kLanguages;
}

} // namespace

QString HelpTopic()
{
    if (g_onHomePage)
        return QStringLiteral("about-reelwright");
    if (g_onListPage)
        return QStringLiteral("adding-files-for-repair");
    if (g_onSavePage)
        return QStringLiteral("previewing-and-saving-files");
    if (g_advancePending)
        return QStringLiteral("performing-advanced-repair");
    if (g_onRepairPage)
        return QStringLiteral("repairing-corrupt-files");
    // No page flag set, as after a save that was cancelled: on the results
    // page that is still previewing and saving; elsewhere the overview.
    return g_resultsShown ? QStringLiteral("previewing-and-saving-files") : QStringLiteral("about-reelwright");
}

// A value outside 0 to 10 sets no language flag; it gets the English pages.
QString HelpLanguage(int languageType)
{
    return QLatin1String(KnownLanguage(languageType) ? kHelpLanguages[languageType] : "en");
}

QString HelpAddress(const QString& topic, const QString& language)
{
    if (topic.isEmpty() || language.isEmpty())
        return QString();
    return QLatin1String(kHelpBase) + language + QLatin1Char('/') + topic;
}

QString SampleHelpAddress()
{
    const QString page = HelpAddress(QStringLiteral("performing-advanced-repair"), HelpLanguage(g_languageType));
    return page.isEmpty() ? page : page + QStringLiteral("#reference-file");
}

QString LinkLanguageKey(int languageType)
{
    return QLatin1String(KnownLanguage(languageType) ? kKeyLanguages[languageType] : "EN");
}

QString LinkFromStore(const QString& name, const QString& fallback)
{
    QSettings store(g_settingsPath, QSettings::IniFormat);
    const QString key = LinkLanguageKey(g_languageType) + QLatin1Char('/') + name;
    return store.contains(key) ? store.value(key).toString().trimmed() : fallback;
}

QString DefaultLearnMoreLink()
{
    return HelpAddress(QStringLiteral("performing-advanced-repair"), HelpLanguage(g_languageType));
}

QString DefaultSupportLink()
{
    return QLatin1String(kSupportLink);
}

QString LicensePath()
{
    // Beside the program when it runs from the build; under share/ once installed.
    for (const QString& folder : {g_programDir, g_programDir + QStringLiteral("/../share/reelwright")}) {
        const QFileInfo file(folder + QStringLiteral("/LICENSE"));
        if (file.isFile())
            return file.absoluteFilePath();
    }
    return QString();
}
