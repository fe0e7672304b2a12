// Placeholder until this routine is built: the file gets a negative verdict.
#include "core/thread_video_repair.h"

void ThreadVideoRepair::RepairFlvFile(const QString& fileName) { RoutineMissing("RepairFlvFile"); Q_EMIT WriteStatus(false, false, fileName, false); }
