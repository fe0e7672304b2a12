// Placeholder until this routine is built: the file gets a negative verdict.
#include "core/thread_video_repair.h"

static void FailPass(ThreadVideoRepair* t, const char* name)
{
    t->RoutineMissing(name);
    Q_EMIT t->WriteStatus(false, false, t->m_fileName, false);
}
void ThreadVideoRepair::RepairHevcAac(const QString&, const QString&) { FailPass(this, "RepairHevcAac"); }
void ThreadVideoRepair::RepairHevcLpcm(const QString&, const QString&) { FailPass(this, "RepairHevcLpcm"); }
