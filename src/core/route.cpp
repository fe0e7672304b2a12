// The table of routes, and what every route shares.
#include "core/route.h"

#include "core/log_cipher.h"

// Each route's maker lives in the route's own file.
std::unique_ptr<Route> MakeAviRoute();
std::unique_ptr<Route> MakeFlvRoute();
std::unique_ptr<Route> MakeDatRoute();
std::unique_ptr<Route> MakeAsfRoute();
std::unique_ptr<Route> MakeMtsRoute();
std::unique_ptr<Route> MakeMatroskaRoute();
std::unique_ptr<Route> MakeMpegRoute();
std::unique_ptr<Route> MakeQuickTimeRoute();

namespace {

using RouteMaker = std::unique_ptr<Route> (*)();

struct Row {
    const char* suffixes[4];
    RouteMaker make;
};

const Row kRoutes[] = {
    {{"AVI", "avi", "DIVX", "divx"}, MakeAviRoute},
    {{"FLV", "flv", nullptr, nullptr}, MakeFlvRoute},
    {{"DAT", "dat", nullptr, nullptr}, MakeDatRoute},
    {{"wmv", "asf", "WMV", "ASF"}, MakeAsfRoute},
    {{"MTS", "mts", nullptr, nullptr}, MakeMtsRoute},
    {{"MKV", "mkv", "WEBM", "webm"}, MakeMatroskaRoute},
    {{"MPEG", "MPG", "mpeg", "mpg"}, MakeMpegRoute},
};

// Exact, case-sensitive comparison in the order of the table: a suffix in
// mixed case (Mov, Avi) matches no row and takes the QuickTime family.
RouteMaker MakerFor(const QString& suffix)
{
    for (const Row& row : kRoutes)
        for (const char* s : row.suffixes)
            if (s && suffix == QLatin1String(s))
                return row.make;
    return MakeQuickTimeRoute;
}

} // namespace

std::unique_ptr<Route> RouteForSuffix(const QString& suffix) { return MakerFor(suffix)(); }

bool SameRoute(const QString& suffix, const QString& other) { return MakerFor(suffix) == MakerFor(other); }

void WriteCipheredLine(FileWriter* log, LogCipher& cipher, const QString& line)
{
    if (!log || !log->isOpen())
        return;
    log->write(cipher.encryptToString(line).toLatin1() + "\r\n");
}
