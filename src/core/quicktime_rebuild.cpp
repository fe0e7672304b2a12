// Placeholder until this routine is built: the file gets a negative verdict.
#include "core/thread_video_repair.h"

void ThreadVideoRepair::RebuildQuickTimeFile(const QString&)
{
    if (g_remuxed) {
        g_repairedPaths << m_workDir + QStringLiteral("/") + m_fileName;
        return;
    }
    RoutineMissing("RebuildQuickTimeFile");
}
