#pragma once
// ThreadVideoRepair: the worker that repairs the files of one run. For each
// file it builds a RepairJob, runs the route of the file's suffix and sends
// the verdict; it implements the routes' Reporter by emitting its signals.
#include "core/byte_reader.h"
#include "core/file_writer.h"
#include "core/repair_globals.h"
#include "core/route.h"

#include <QMutex>
#include <QString>
#include <QStringList>
#include <QThread>
#include <QWaitCondition>
#include <cstdint>
#include <memory>


class ThreadVideoRepair : public QThread, public Reporter {
    Q_OBJECT
public:
    explicit ThreadVideoRepair(QObject* parent = nullptr);
    ~ThreadVideoRepair() override;

    // Called on the window's thread. Starts a run over files, or, when a run
    // is active, asks it to stop. The option (the window's Advance Repair
    // flag) is not used: the run reads g_referenceMode.
    void StartRepair(const QStringList& files, bool option);

Q_SIGNALS:
    void RepairFinish();
    void disableAddReferenceBtn();
    void Info(QString);
    void DestInfo(QString);
    void MaxProgress(ulong);
    void ProgressValue(ulong);
    void ProcessAborted();
    void FileNamelabel(QString);
    void WriteStatus(bool repaired, bool reserved, QString fileName, bool defaultCodec);
    void ShowProgressBar();
    void SetProgressBarRange(ulong);
    void setProgressvalue(ulong);
    void ShowOverAllProgressBar();
    void OverAllProgressBarMax(uint);
    void OverAllProgressValue(uint count, uint percent);
    void WriteProcessingStatus(QString);
    void WriteAVIFileStatus(bool hasVideo_Strh, QString fileNmae);
    void ffmpegstopbtn();
    // What a repair recovered, sent just before its positive verdict.
    void RecoveryFigures(QString fileName, qulonglong videoFrames, double audioSeconds, qulonglong skippedBytes);
    // Bytes of the file that could not be read (bad sectors) and were taken
    // as zeros; sent after the verdict, before the next file, when not 0
    // (again with a larger count when a later stage met more).
    void ReadDamage(QString fileName, qulonglong unreadableBytes);
    // Why a file's verdict is negative where the file is not to blame (no
    // room for its results), sent after the verdict, before the next file.
    void VerdictReason(QString fileName, QString reason);
    // The file a repair wrote, sent before the verdict; its name may differ
    // from the input's (a DAT file gives a .mov).
    void OutputWritten(QString fileName, QString outputPath);

protected:
    void run() override;

public:
    // ---- Per-file driver (core/repair_files.cpp) ----
    void RepairFiles(QStringList files, QString referencePath);

    // Before a positive verdict: sends the output's path and its figures,
    // read back from the file. copiesInput: the output carries the input's
    // own bytes, so what it lacks of them was skipped; a file encoded anew
    // skips nothing.
    void AnnounceOutput(const QString& outPath, bool copiesInput = true);

    // ---- The current file ----
    std::unique_ptr<ByteReader> m_file;     // the damaged file, read-only; null when not open
    FileWriter m_logHandle;                 // logFile.txt of the current file
    QString m_workDir;                      // the folder its results go to (a Repaired)
    QString m_logPath;                      // m_workDir + "/logFile.txt"
    QString m_fileName;
    uint64_t m_fileSize = 0;
    QStringList m_fileList;                 // the files of the run
    RunCarryOver m_carried;                 // what one file of the run leaves to the next

    // ---- Synchronisation ----
    QMutex m_mutex;
    QWaitCondition m_wakeCondition;

    // Reporter: the signals above.
    void showFileProgress(const QString& label) override;
    void setLabel(const QString& label) override;
    void setRange(ulong maximum) override;
    void setValue(ulong value) override;
    void sendVerdict(const RepairJob& job, const Verdict& verdict) override;
};
