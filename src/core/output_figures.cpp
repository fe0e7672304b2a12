#include "core/output_figures.h"

#include "core/muxer.h"

#include <QFileInfo>
#include <QHash>
#include <QList>

OutputFigures ParseFrameListing(const QByteArray& listing)
{
    OutputFigures f;
    QHash<int, double> timeBase;      // seconds per tick
    QHash<int, QByteArray> kind;
    int video = -1, audio = -1;
    for (const QByteArray& raw : listing.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.startsWith("#tb ") || line.startsWith("#media_type ")) {
            const int colon = line.indexOf(':');
            const int space = line.indexOf(' ');
            if (colon < 0)
                continue;
            const int stream = line.mid(space + 1, colon - space - 1).toInt();
            const QByteArray value = line.mid(colon + 1).trimmed();
            if (line.startsWith("#tb ")) {
                const QList<QByteArray> ratio = value.split('/');
                const double den = ratio.value(1).toDouble();
                timeBase[stream] = den > 0 ? ratio.value(0).toDouble() / den : 0;
            } else {
                kind[stream] = value;
                if (value == "video" && video < 0)
                    video = stream;
                if (value == "audio" && audio < 0)
                    audio = stream;
            }
            continue;
        }
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        const QList<QByteArray> fields = line.split(',');
        if (fields.size() < 5)
            continue;
        bool ok = false;
        const int stream = fields.at(0).trimmed().toInt(&ok);
        if (!ok)
            continue;
        if (stream == video)
            ++f.videoFrames;
        else if (stream == audio)
            f.audioSeconds += fields.at(3).trimmed().toDouble() * timeBase.value(stream);
    }
    f.measured = true;
    return f;
}

OutputFigures MeasureOutput(const QString& path)
{
    QByteArray listing;
    if (!QFileInfo(path).isFile() || !ReadFrameListing(path, listing))
        return {};
    return ParseFrameListing(listing);
}
