#pragma once
// The eleven languages: one table, the flag table and the translator pairs.
#include <QString>

struct LanguageRow {
    const char* menuText;   // entry of the language menus (English, as shown)
    const char* code;       // folder VideoTranslation/<code>, file LANG_<code>.qm
    const char* qtFile;     // the toolkit's own catalogue in that folder
    const char* imageCode;  // code in the names of images with text
};

constexpr int kLanguageCount = 11;
extern const LanguageRow kLanguages[kLanguageCount];   // by LanguageType, also the menu order

// One flag per language, exactly one set; language-dependent choices test these.
extern bool g_languageFlags[kLanguageCount];

// The row a stored LanguageType selects: 0 to 9 their own, anything else Hindi.
int LanguageRowFor(int languageType);
// Clears all flags and sets the one of LanguageRowFor(languageType).
void SetLanguageFlag(int languageType);
// The language whose flag is set (0 when none is).
int CurrentLanguage();

// <g_programDir>/VideoTranslation/<code>, or <g_programDir>/../share/reelwright/VideoTranslation/<code>
// when the program is installed
QString TranslationFolder(int language);

// Start: loads and installs the translator pair of the stored language.
void SelectTranslators(int languageType);
// A switch: removes every language's translators, then loads and installs
// the toolkit's catalogue and the program's for this one.
void InstallLanguage(int language);
