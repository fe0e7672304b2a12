#pragma once
// The process-wide values of the engine: only what the window (or the batch
// runner) and the repair thread share by design, each with who writes it and
// who reads it. Everything else of a file lives in its route and its
// RepairJob; what lasts from one file to the next in the run's RunCarryOver.
// The muxer's own two (g_muxerBusy, g_remuxRan) are in core/muxer.h, the
// settings file in core/platform_core.h.
#include <QString>
#include <QStringList>
#include <atomic>
#include <cstdint>

// Stop this run. Written by the window's Stop and close answers, the batch
// runner's signal handler and the driver at a run's start; read by every
// loop of the engine.
extern std::atomic<bool> g_stopRequested;
// run() is active. Written by the repair thread; read by the window (close,
// add files, language change, Stop).
extern std::atomic<bool> g_repairRunning;
// This run is an Advance Repair run. Written by the window (Advance Repair,
// return to page 1) and the batch runner before a run, and cleared by the
// driver when the sample has gone; read by the driver and the window.
extern std::atomic<bool> g_referenceMode;
// Drop the reference at the next start. Written by the reference dialog;
// read and cleared by the driver.
extern std::atomic<bool> g_forgetReference;
// The ReferenceVideo. Written by the window's reference dialog and the batch
// runner between runs; read by the thread when a run starts.
extern QString g_referencePath;
// The folder chosen by the user for results. Written by the window's Change
// Location and the batch runner between runs; read by the driver.
extern QString g_customWorkRoot;

// A movie reader ran to its end. Written by the movie readers and the
// container routes during a run, cleared by the window between runs and on
// a negative row.
extern std::atomic<bool> g_moovRead;
// The output paths of the run. Written by the driver and the routes (through
// RepairJob::outputs) during a run; read by the window and the batch runner
// after it (results, clean-up of unsaved results).
extern QStringList g_repairedPaths;

// Folders fixed at start-up by the window's and the batch runner's main;
// read by the muxer runner (g_appDir) and the help links (g_programDir).
extern QString g_programDir;                // folder of the executable
extern QString g_appDir;                    // g_programDir + "/Libmp4", the muxer's folder
