#pragma once
// Process-wide values of the engine. The window writes the flags of the first
// group between runs or as a stop request; everything else belongs to the
// repair thread while a run is active and is read by the window only after a
// verdict or the end of the run.
#include <QString>
#include <QStringList>
#include <atomic>
#include <cstdint>

// Shared with the window.
extern std::atomic<bool> g_stopRequested;   // stop this run; polled at the head of every loop
extern std::atomic<bool> g_repairRunning;   // run() is active
extern std::atomic<bool> g_referenceMode;   // this run is an Advance Repair run
extern std::atomic<bool> g_forgetReference; // drop the reference at the next start
extern QString g_referencePath;             // the ReferenceVideo
extern QString g_customWorkRoot;            // folder chosen by the user for scratch data

// Per run and per file.
extern bool g_moovRead;                     // a movie reader ran to its end
extern QStringList g_repairedPaths;         // output paths of the run

// Folders fixed at start-up.
extern QString g_programDir;                // folder of the executable
extern QString g_appDir;                    // g_programDir + "/Libmp4", the muxer's folder
