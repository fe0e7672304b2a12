#pragma once
// Addresses of the online help and of the maker's pages, chosen by the page
// that is up and by the language (g_languageType).
#include <QString>

// The help topic for the page flags as they stand: the last element of the
// help address.
QString HelpTopic();

// The section on sample (reference) files of the Advance Repair help page,
// in the current language: what "What is a reference file?" opens.
QString SampleHelpAddress();

// The language element of a help address for a LanguageType value: de, cn,
// fr, it, hi, pt, nl, es, jp, ko or en.
QString HelpLanguage(int languageType);

// The address of topic in language.
QString HelpAddress(const QString& topic, const QString& language);

// The group of the per-language keys of the settings store (EN, DE, ... HI).
QString LinkLanguageKey(int languageType);

// The value of "<XX>/<name>" in the store at g_settingsPath for the current
// language. A missing key gives fallback; a key that is present but empty
// gives an empty text, which means "no link".
QString LinkFromStore(const QString& name, const QString& fallback);

// The built-in addresses used when the store holds no key of its own.
QString DefaultLearnMoreLink();
QString DefaultSupportLink();

// The licence (the GNU GPL, version 3): LICENSE in the application folder,
// else the copy installed under share/reelwright. Empty when none exists.
QString LicensePath();
