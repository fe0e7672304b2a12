#pragma once
// Platform layer, part without widgets: what stands in for the Windows
// registry store, file attributes and product name on Linux.
#include <QString>

extern QString g_settingsPath;   // INI file of the settings store in use

enum class SettingsStore { DataRecovery, PhotoRecovery };

// $XDG_CONFIG_HOME/Corvane Labs/<Data Recovery|Photo Recovery>/Reelwright.ini
QString SettingsFilePath(SettingsStore store);

// Opens the store at path, writes ResizeAppforDPI as true when it is missing,
// and returns its value.
bool EnsureResizeAppforDPI(const QString& path);

// Hides (or shows again) the entry `name` of `folder` for the desktop's file
// managers, through the line `name` in folder/.hidden. Showing removes the
// line, and the .hidden file when it becomes empty. Nothing is renamed.
bool SetHiddenInFolder(const QString& folder, const QString& name, bool hidden);

// The operating system's product name, as the About dialog shows it.
QString ProductName();

// Keeps memory the process frees for its next allocations instead of giving
// it back to the system at once (see the definition for why).
void KeepFreedMemoryForReuse();
