#include "shell/batch_jobs.h"

#include "core/output_folder.h"

#include "core/repair_globals.h"
#include "core/platform_core.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <memory>

namespace {

void PrintLine(const QJsonObject& obj)
{
    const QByteArray line = QJsonDocument(obj).toJson(QJsonDocument::Compact);
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

// A path as a person reads it: relative to the current folder when below it.
QString Shown(const QString& path)
{
    const QString relative = QDir::current().relativeFilePath(path);
    return relative.startsWith(QLatin1String("..")) ? path : relative;
}

// Moves a finished result into place over an older one of the same name.
// Across file systems (a scratch folder in the temp folder) it is copied
// under a temporary name first, so the target is never half there.
bool MoveInto(const QString& from, const QString& to)
{
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0)
        return true;
    const QString partial = to + QStringLiteral(".part");
    QFile::remove(partial);
    const bool ok = QFile::copy(from, partial)
                    && std::rename(QFile::encodeName(partial).constData(), QFile::encodeName(to).constData()) == 0;
    QFile::remove(partial);
    QFile::remove(from);
    return ok;
}

enum class JobState { Waiting, Running, Done, Failed, Stopped };

struct Job {
    QString file, resultFolder;
    JobState state = JobState::Waiting;
    std::unique_ptr<QProcess> process;
    std::unique_ptr<QTemporaryDir> scratch;
    QList<QJsonObject> verdicts;
    QStringList outputs;   // where the results are now
};

class Dispatcher : public QObject {
public:
    explicit Dispatcher(const BatchRun& run) : m_run(run)
    {
        for (int i = 0; i < run.files.size(); ++i) {
            m_jobs.emplace_back();
            m_jobs.back().file = run.files[i];
            m_jobs.back().resultFolder = run.resultFolders[i];
            m_inputs.insert(QFileInfo(run.files[i]).canonicalFilePath());
        }
        // The signal handler only sets the flag; it is looked at here.
        connect(&m_stopPoll, &QTimer::timeout, this, [this] {
            if (g_stopRequested && !m_stopping)
                stop();
        });
        m_stopPoll.start(100);
    }

    void start()
    {
        fill();
        finishIfDone();
    }
    int exitCode() const { return m_stopping ? 1 : 0; }

private:
    void fill()
    {
        while (!m_stopping && m_running < m_run.jobs && m_next < int(m_jobs.size()))
            launch(m_next++);
    }

    void launch(int index)
    {
        Job& job = m_jobs[size_t(index)];
        // The scratch folder sits beside where the result goes, so that the
        // result moves by a rename; the engine's fixed scratch names then
        // never meet those of another job.
        const QString near = m_run.besideFiles ? QFileInfo(job.file).absolutePath() : m_run.workRoot;
        for (const QString& parent : {near, QDir::tempPath()}) {
            job.scratch = std::make_unique<QTemporaryDir>(parent + QStringLiteral("/.reelwright-job-XXXXXX"));
            if (job.scratch->isValid())
                break;
        }
        QStringList args{QStringLiteral("--work-root"), job.scratch->path()};
        if (!m_run.reference.isEmpty())
            args << QStringLiteral("--reference") << m_run.reference;
        if (m_run.quiet)
            args << QStringLiteral("--quiet");
        args << QStringLiteral("--") << job.file;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QLatin1String(kBatchJobVariable),
                   m_run.jobs == 1 && !m_run.quiet ? QStringLiteral("progress") : QStringLiteral("1"));
        env.insert(QStringLiteral("TMPDIR"), job.scratch->path());   // the engine clears <temp>/Repaired
        job.process = std::make_unique<QProcess>();
        job.process->setProcessEnvironment(env);
        job.process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        job.process->setStandardInputFile(QProcess::nullDevice());
        connect(job.process.get(), QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
                [this, index](int code, QProcess::ExitStatus status) { finished(index, code, status); });
        connect(job.process.get(), &QProcess::errorOccurred, this, [this, index](QProcess::ProcessError e) {
            if (e == QProcess::FailedToStart)
                finished(index, -1, QProcess::CrashExit);
        });
        if (!m_run.quiet && m_run.jobs > 1)
            std::fprintf(stderr, "[%d/%d] %s\n", index + 1, int(m_jobs.size()), qPrintable(Shown(job.file)));
        job.state = JobState::Running;
        ++m_running;
        job.process->start(QCoreApplication::applicationFilePath(), args);
    }

    void finished(int index, int code, QProcess::ExitStatus status)
    {
        Job& job = m_jobs[size_t(index)];
        --m_running;
        QJsonObject end;
        for (const QByteArray& line : job.process->readAllStandardOutput().split('\n')) {
            const QJsonObject obj = QJsonDocument::fromJson(line).object();
            if (obj.value("event") == QLatin1String("verdict")) {
                QJsonObject verdict = obj;
                verdict.insert("path", job.file);
                job.verdicts << verdict;
            } else if (obj.value("event") == QLatin1String("end")) {
                end = obj;
            }
        }
        const bool complete = status == QProcess::NormalExit && code == 0
                              && end.value("result") == QLatin1String("finished");
        if (complete) {
            job.state = JobState::Done;
            // The verdicts name the results where they end up, not in the scratch folder.
            QHash<QString, QString> placed;
            for (const QJsonValue& v : end.value("outputs").toArray())
                placed.insert(v.toString(), place(job, v.toString()));
            for (QJsonObject& verdict : job.verdicts) {
                if (!verdict.contains("output"))
                    continue;
                const QString to = placed.value(verdict.value("output").toString());
                if (to.isEmpty())
                    verdict.remove("output");
                else
                    verdict.insert("output", to);
            }
        } else {
            job.state = m_stopping ? JobState::Stopped : JobState::Failed;
            if (!m_stopping)
                std::fprintf(stderr, "reelwright-batch: the repair of %s ended abnormally\n", qPrintable(job.file));
        }
        job.scratch.reset();   // removes what is left of the job, partial files included
        job.process.release()->deleteLater();
        printReady();
        fill();
        finishIfDone();
    }

    // A result named like another file of the run whose result goes to the
    // same folder (a DAT file's .mov beside that .mov) takes the first free
    // "name_2.mov", "name_3.mov"..., as in a run of the engine over all files:
    // the names depend on the inputs alone, not on which job ends first.
    QString ResultName(const Job& job, const QString& name) const
    {
        QSet<QString> taken;
        for (const Job& other : m_jobs)
            if (&other != &job && other.resultFolder == job.resultFolder)
                taken.insert(QFileInfo(other.file).fileName());
        if (name == QFileInfo(job.file).fileName() || !taken.contains(name))
            return name;
        const QFileInfo f(name);
        QString free = name;
        for (int n = 2; taken.contains(free); ++n)
            free = f.completeBaseName() + QStringLiteral("_%1.").arg(n) + f.suffix();
        return free;
    }

    // Moves a result into its folder; returns where it went ("" when nowhere).
    QString place(Job& job, const QString& output)
    {
        const QString target = job.resultFolder + QLatin1Char('/') + ResultName(job, QFileInfo(output).fileName());
        // A result never replaces an input: with a work root above a Repaired
        // folder, an input there may have the result's path.
        if (QFileInfo::exists(target) && m_inputs.contains(QFileInfo(target).canonicalFilePath())) {
            std::fprintf(stderr, "reelwright-batch: %s is an input; its result stays unwritten\n", qPrintable(target));
            return QString();
        }
        if (!QDir().mkpath(job.resultFolder) || !MoveInto(output, target)) {
            // A folder that can't be written (a read-only card) gives way to
            // one in the user's data folder, named on stderr.
            const OutputFolder other = ChooseOutputFolder(QFileInfo(job.file).absolutePath(), QString());
            const QString moved = other.dir + QLatin1Char('/') + QFileInfo(target).fileName();
            if (!other.fallback || !MoveInto(output, moved)) {
                std::fprintf(stderr, "reelwright-batch: can't write %s\n", qPrintable(target));
                return QString();
            }
            std::fprintf(stderr, "reelwright-batch: %s can't be written; the result is %s\n",
                         qPrintable(job.resultFolder), qPrintable(moved));
            job.outputs << moved;
            return moved;
        }
        if (m_run.besideFiles) {
            const QFileInfo folder(job.resultFolder);
            SetHiddenInFolder(folder.absolutePath(), folder.fileName(), true);
        }
        job.outputs << target;
        return target;
    }

    // Verdicts go out in the order of the files, as soon as all before are out.
    void printReady()
    {
        while (m_printed < int(m_jobs.size())) {
            const Job& job = m_jobs[size_t(m_printed)];
            if (job.state == JobState::Waiting || job.state == JobState::Running)
                break;
            for (const QJsonObject& v : job.verdicts)
                PrintLine(v);
            ++m_printed;
        }
    }

    void stop()
    {
        m_stopping = true;
        for (Job& job : m_jobs)
            if (job.state == JobState::Running)
                job.process->terminate();
        // A job that doesn't end on its own soon is killed; its scratch goes all the same.
        QTimer::singleShot(30000, this, [this] {
            for (Job& job : m_jobs)
                if (job.state == JobState::Running)
                    job.process->kill();
        });
        finishIfDone();
    }

    void finishIfDone()
    {
        if (m_done || m_running > 0 || (!m_stopping && m_next < int(m_jobs.size())))
            return;
        m_done = true;
        // After a stop the files not run are skipped over.
        for (Job& job : m_jobs)
            if (job.state == JobState::Waiting)
                job.state = JobState::Stopped;
        printReady();
        QJsonArray outputs;
        for (const Job& job : m_jobs)
            for (const QString& o : job.outputs)
                outputs.append(o);
        PrintLine({{"event", "end"}, {"result", m_stopping ? "aborted" : "finished"}, {"outputs", outputs}});
        if (!m_run.quiet)
            printSummary();
        m_stopPoll.stop();
        QCoreApplication::exit(exitCode());
    }

    // A table for people on stderr: file, verdict, video frames, seconds of
    // sound, and where the result is. Figures only where the verdict has them.
    void printSummary()
    {
        QList<QStringList> rows{{"file", "verdict", "frames", "seconds", "result"}};
        for (const Job& job : m_jobs) {
            QString verdict = QStringLiteral("not repaired"), frames = "-", seconds = "-";
            for (const QJsonObject& v : job.verdicts) {
                if (v.value("repaired").toBool())
                    verdict = QStringLiteral("repaired");
                if (v.contains("videoFrames"))
                    frames = QString::number(v.value("videoFrames").toDouble(), 'f', 0);
                if (v.contains("audioSeconds"))
                    seconds = QString::number(v.value("audioSeconds").toDouble(), 'f', 1);
            }
            if (job.state == JobState::Failed)
                verdict = QStringLiteral("ended abnormally");
            else if (job.state == JobState::Stopped)
                verdict = QStringLiteral("stopped");
            QStringList shown;
            for (const QString& o : job.outputs)
                shown << Shown(o);
            rows.append({Shown(job.file), verdict, frames, seconds, shown.isEmpty() ? "-" : shown.join(", ")});
        }
        QVector<int> width(5, 0);
        for (const QStringList& row : rows)
            for (int c = 0; c < 5; ++c)
                width[c] = qMax(width[c], row[c].size());
        std::fputc('\n', stderr);
        for (const QStringList& row : rows) {
            // Text columns to the left, figures to the right.
            const QString line = row[0].leftJustified(width[0]) + "  " + row[1].leftJustified(width[1]) + "  "
                                 + row[2].rightJustified(width[2]) + "  " + row[3].rightJustified(width[3]) + "  "
                                 + row[4];
            std::fprintf(stderr, "%s\n", qPrintable(line));
        }
        std::fflush(stderr);
    }

    BatchRun m_run;
    std::vector<Job> m_jobs;
    QSet<QString> m_inputs;   // canonical paths
    QTimer m_stopPoll;
    int m_next = 0, m_running = 0, m_printed = 0;
    bool m_stopping = false, m_done = false;
};

} // namespace

int RunBatchJobs(const BatchRun& run)
{
    Dispatcher dispatcher(run);
    QTimer::singleShot(0, &dispatcher, [&dispatcher] { dispatcher.start(); });
    return QCoreApplication::exec();
}
