#include "core/repair_globals.h"

std::atomic<bool> g_stopRequested{false};
std::atomic<bool> g_repairRunning{false};
std::atomic<bool> g_referenceMode{false};
std::atomic<bool> g_forgetReference{false};
QString g_referencePath;
QString g_customWorkRoot;

QString g_workRoot;
QString g_referenceFullPath;
uint64_t g_inputSize = 0;
bool g_moovRead = false;
bool g_hasSoundTrak = false;
bool g_remuxed = false;
QStringList g_repairedPaths;

uint32_t g_videoTimeScale = 0;
uint32_t g_soundTimeScale = 0;
uint32_t g_frameWidth = 0;
uint32_t g_frameHeight = 0;
uint32_t g_videoSampleDelta = 0;
uint32_t g_audioSampleDelta = 0;
uint32_t g_audioFrameSize = 0;

QString g_programDir;
QString g_appDir;
