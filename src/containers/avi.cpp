// Placeholder until this routine is built: the file gets a negative verdict.
#include "core/thread_video_repair.h"

void ThreadVideoRepair::RepairAviDirect(bool) { RoutineMissing("RepairAviDirect"); Q_EMIT WriteAVIFileStatus(false, m_fileName); }
void ThreadVideoRepair::RepairAviWithReference(bool) { RoutineMissing("RepairAviWithReference"); Q_EMIT WriteAVIFileStatus(false, m_fileName); }
