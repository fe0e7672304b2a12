// Test helper: takes the single-instance guard under a key and reports.
//   instance_guard_probe KEY hold   -> prints "acquired" and sleeps, or "busy"
//   instance_guard_probe KEY try    -> prints "acquired" or "busy" and exits
#include "shell/platform_gui.h"

#include <QCoreApplication>
#include <QSharedMemory>
#include <QThread>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 3)
        return 2;
    auto guard = AcquireInstanceGuard(QString::fromUtf8(argv[1]));
    std::puts(guard ? "acquired" : "busy");
    std::fflush(stdout);
    if (guard && QByteArray(argv[2]) == "hold")
        QThread::sleep(600);
    return 0;
}
