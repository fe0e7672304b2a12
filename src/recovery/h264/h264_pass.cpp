// H.264 repair passes. The frame-by-frame rebuild is not in place yet: each
// pass ends with a negative verdict so no file is reported as repaired.
#include "core/repair_globals.h"
#include "core/thread_video_repair.h"

static void FailPass(ThreadVideoRepair* t, const char* name)
{
    t->RoutineMissing(name);
    g_passFailed = true;
    g_moovRead = false;
    Q_EMIT t->WriteStatus(false, false, t->m_fileName, false);
}
void ThreadVideoRepair::RepairH264Aac(const QString&, const QString&) { FailPass(this, "RepairH264Aac"); }
void ThreadVideoRepair::RepairH264Lpcm(const QString&, const QString&) { FailPass(this, "RepairH264Lpcm"); }
void ThreadVideoRepair::RepairH264Sowt(const QString&, const QString&) { FailPass(this, "RepairH264Sowt"); }
void ThreadVideoRepair::RepairH264Twos(const QString&, const QString&) { FailPass(this, "RepairH264Twos"); }
