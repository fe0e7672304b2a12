#include "core/video_suffixes.h"

const QStringList& VideoSuffixes()
{
    static const QStringList suffixes = {
        "MOV", "mov", "mp4", "MP4", "Mp4", "F4V", "f4v", "m4v", "M4V", "3G2", "3g2", "3GP", "3gp",
        "AVI", "avi", "DIVX", "divx", "FLV", "flv", "MPG", "mpg", "mpeg", "MPEG", "mkv", "MKV",
        "webm", "WEBM", "MTS", "mts", "asf", "ASF", "wmv", "WMV", "dat", "DAT", "voc", "VOC"};
    return suffixes;
}

bool IsVideoSuffix(const QString& suffix)
{
    return VideoSuffixes().contains(suffix);   // case-sensitive
}
