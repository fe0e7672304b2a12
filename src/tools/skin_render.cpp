// Renders the skin: every image of resources/skin.txt from its SVG source at
// the three scales, into BUILD/skin/images/<set>/<name>, and writes skin.qrc
// listing them under :/images/.
//   skin_render MANIFEST SVG_DIR QM_DIR OUT_DIR
// A manifest line is  name | svg | WxH | sets | key=value;key=value
// WxH is the size at 96 dots per inch; sets is empty (all three), a list of
// 96/125/144, or "root" (one image at :/images/<name>, WxH as it stands).
// {{key}} in the SVG text takes the value. The key "label" draws a text
// after the SVG (box "labelbox=x,y,w,h" in 96-dpi pixels); a name holding
// {LANG} is made once per language, its label translated by that
// language's LANG_XX.qm. Names ending .bmp are flattened onto "bg".
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTextStream>
#include <QTranslator>
#include <cstdio>

namespace {

struct Set {
    const char* folder;
    const char* key;
    double scale;
};
const Set kSets[] = {{"96-DPI", "96", 1.0}, {"125-DPI", "125", 1.25}, {"144-DPI", "144", 1.5}};

// Image code in file names, and folder code of the translation, by LanguageType.
const char* const kImageCodes[] = {"EN", "GR", "FR", "IT", "ES", "JN", "CN", "KO", "DU", "BR", "HI"};
const char* const kLangCodes[] = {"EN", "DE", "FR", "IT", "ES", "JA", "CN", "KO", "DU", "BR", "HI"};

QString Translated(const QString& qmDir, int lang, const QString& text)
{
    QTranslator tr;
    const QString code = QLatin1String(kLangCodes[lang]);
    if (!tr.load(QStringLiteral("%1/%2/LANG_%2.qm").arg(qmDir, code)))
        return text;
    const QString t = tr.translate("VideoRepairWindow", text.toUtf8().constData());
    return t.isEmpty() ? text : t;
}

// The label: one line, bold, shrunk until it fits the box.
void DrawLabel(QPainter& p, const QMap<QString, QString>& keys, const QString& text, double scale)
{
    const QStringList box = keys.value(QStringLiteral("labelbox")).split(QLatin1Char(','));
    if (box.size() != 4)
        return;
    const QRectF r(box[0].toDouble() * scale, box[1].toDouble() * scale, box[2].toDouble() * scale,
                   box[3].toDouble() * scale);
    QFont font(QStringLiteral("Noto Sans"));
    font.setWeight(QFont::DemiBold);
    double px = keys.value(QStringLiteral("labelsize"), QStringLiteral("13")).toDouble() * scale;
    for (; px > 6.0; px -= 0.5) {
        font.setPixelSize(int(px));
        if (QFontMetricsF(font).horizontalAdvance(text) <= r.width())
            break;
    }
    p.setFont(font);
    p.setPen(QColor(keys.value(QStringLiteral("labelcolor"), QStringLiteral("#1d4ed8"))));
    p.drawText(r, Qt::AlignCenter, text);
}

bool Render(const QString& svgText, const QMap<QString, QString>& keys, const QString& label, QSize size,
            double scale, const QString& path)
{
    QString text = svgText;
    for (auto it = keys.begin(); it != keys.end(); ++it)
        text.replace(QStringLiteral("{{%1}}").arg(it.key()), it.value());
    QSvgRenderer svg(text.toUtf8());
    if (!svg.isValid())
        return false;
    QImage img(size, QImage::Format_ARGB32_Premultiplied);
    img.fill(Qt::transparent);
    {
        QPainter p(&img);
        p.setRenderHint(QPainter::Antialiasing);
        p.setRenderHint(QPainter::TextAntialiasing);
        svg.render(&p, QRectF(0, 0, size.width(), size.height()));
        if (!label.isEmpty())
            DrawLabel(p, keys, label, scale);
    }
    if (path.endsWith(QLatin1String(".bmp"))) {
        // Bitmaps carry no alpha: flatten onto the colour they sit on.
        QImage flat(size, QImage::Format_RGB32);
        flat.fill(QColor(keys.value(QStringLiteral("bg"), QStringLiteral("#ffffff"))));
        QPainter(&flat).drawImage(0, 0, img);
        img = flat;
    }
    QDir().mkpath(QFileInfo(path).absolutePath());
    return img.save(path);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 5) {
        std::fprintf(stderr, "usage: skin_render MANIFEST SVG_DIR QM_DIR OUT_DIR\n");
        return 2;
    }
    const QString svgDir = args[2], qmDir = args[3], outDir = args[4];
    QFile manifest(args[1]);
    if (!manifest.open(QIODevice::ReadOnly | QIODevice::Text)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(args[1]));
        return 1;
    }
    QStringList qrcFiles;
    int lineNo = 0, failures = 0;
    QTextStream in(&manifest);
    in.setCodec("UTF-8");
    while (!in.atEnd()) {
        const QString line = in.readLine().trimmed();
        ++lineNo;
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QStringList f = line.split(QLatin1Char('|'));
        if (f.size() < 3) {
            std::fprintf(stderr, "%s:%d: too few fields\n", qPrintable(args[1]), lineNo);
            return 1;
        }
        const QString name = f[0].trimmed();
        QFile svgFile(svgDir + QLatin1Char('/') + f[1].trimmed());
        if (!svgFile.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "%s:%d: no SVG %s\n", qPrintable(args[1]), lineNo, qPrintable(svgFile.fileName()));
            return 1;
        }
        const QString svgText = QString::fromUtf8(svgFile.readAll());
        const QStringList wh = f[2].trimmed().split(QLatin1Char('x'));
        const QSize base(wh.value(0).toInt(), wh.value(1).toInt());
        const QString sets = f.value(3).trimmed();
        QMap<QString, QString> keys;
        for (const QString& kv : f.value(4).split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            const int eq = kv.indexOf(QLatin1Char('='));
            if (eq > 0)
                keys.insert(kv.left(eq).trimmed(), kv.mid(eq + 1).trimmed());
        }
        // The size is known to every SVG, so that corners stay round at any width.
        keys.insert(QStringLiteral("w"), QString::number(base.width()));
        keys.insert(QStringLiteral("h"), QString::number(base.height()));
        keys.insert(QStringLiteral("w1"), QString::number(base.width() - 1));
        keys.insert(QStringLiteral("h1"), QString::number(base.height() - 1));
        keys.insert(QStringLiteral("cx"), QString::number(base.width() / 2.0));
        keys.insert(QStringLiteral("cy"), QString::number(base.height() / 2.0));
        const bool perLanguage = name.contains(QLatin1String("{LANG}"));
        for (int lang = 0; lang < (perLanguage ? 11 : 1); ++lang) {
            QString fileName = name;
            fileName.replace(QLatin1String("{LANG}"), QLatin1String(kImageCodes[lang]));
            const QString source = keys.value(QStringLiteral("label"));
            const QString label = perLanguage ? Translated(qmDir, lang, source) : source;
            if (sets == QLatin1String("root")) {
                failures += !Render(svgText, keys, label, base, 1.0, outDir + QLatin1Char('/') + fileName);
                qrcFiles << fileName;
                continue;
            }
            for (const Set& s : kSets) {
                if (!sets.isEmpty() && !sets.split(QLatin1Char(' ')).contains(QLatin1String(s.key)))
                    continue;
                const QSize size(int(base.width() * s.scale + 0.5), int(base.height() * s.scale + 0.5));
                const QString rel = QLatin1String(s.folder) + QLatin1Char('/') + fileName;
                failures += !Render(svgText, keys, label, size, s.scale, outDir + QLatin1Char('/') + rel);
                qrcFiles << rel;
            }
        }
    }
    QFile qrc(outDir + QStringLiteral("/skin.qrc"));
    if (!qrc.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return 1;
    QTextStream out(&qrc);
    out.setCodec("UTF-8");
    out << "<RCC>\n  <qresource prefix=\"/images\">\n";
    for (const QString& file : qrcFiles)
        out << "    <file>" << file.toHtmlEscaped() << "</file>\n";
    out << "  </qresource>\n</RCC>\n";
    std::printf("skin_render: %d images, %d failed\n", int(qrcFiles.size()), failures);
    return failures ? 1 : 0;
}
