#include "workspace/about_dlg.h"

#include "core/platform_core.h"
#include "shell/platform_gui.h"
#include "shell/scale.h"
#include "workspace/help_links.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSysInfo>
#include <QUrl>
#include <QVBoxLayout>

AboutDlg::AboutDlg(QWidget* parent)
    : FramelessDialog(parent),
      m_title(new QLabel(this)),
      m_name(new QLabel(QStringLiteral("Reelwright"), this)),
      m_version(new QLabel(this)),
      m_system(new QLabel(this)),
      m_close(new QPushButton(QStringLiteral("\u2715"), this)),
      SupportBtn(new QPushButton(this)),
      LicenseBtn(new QPushButton(this)),
      OkBtn(new QPushButton(this))
{
    setObjectName(QStringLiteral("AboutDlg"));
    m_title->setObjectName(QStringLiteral("TitleLabl"));
    m_name->setObjectName(QStringLiteral("NameLabl"));
    m_version->setObjectName(QStringLiteral("VersionLabl"));
    m_system->setObjectName(QStringLiteral("SystemLabl"));
    m_close->setObjectName(QStringLiteral("closeBtn"));
    SupportBtn->setObjectName(QStringLiteral("SupportBtn"));
    LicenseBtn->setObjectName(QStringLiteral("LicenseBtn"));
    OkBtn->setObjectName(QStringLiteral("OkBtn"));

    QFont big(QStringLiteral("Segoe UI Semibold"), 16);
    big.setBold(true);
    m_name->setFont(big);
    m_name->setStyleSheet(QStringLiteral("color: #1f3b64;"));
    for (QLabel* l : {m_name, m_version, m_system}) {
        l->setAlignment(Qt::AlignCenter);
        l->setWordWrap(true);
        l->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    // The two links look like links (the dialog sheet takes their face away).
    for (QPushButton* b : {SupportBtn, LicenseBtn, OkBtn})
        b->setCursor(Qt::PointingHandCursor);
    connect(SupportBtn, &QPushButton::clicked, this, &AboutDlg::OpenSupport);
    connect(LicenseBtn, &QPushButton::clicked, this, &AboutDlg::OpenLicense);
    connect(OkBtn, &QPushButton::clicked, this, &QDialog::accept);

    QVBoxLayout* layout = AddTitleRow(m_title, m_close);
    layout->addStretch();
    layout->addWidget(m_name);
    layout->addWidget(m_version);
    layout->addWidget(m_system);
    layout->addStretch();
    auto* links = new QHBoxLayout;
    links->addStretch();
    links->addWidget(SupportBtn);
    links->addSpacing(int(16 * g_uiScale));
    links->addWidget(LicenseBtn);
    links->addStretch();
    layout->addLayout(links);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(OkBtn);
    row->addStretch();
    layout->addLayout(row);
    setFixedSize(int(420 * g_uiScale), int(240 * g_uiScale));
    Retranslate();
}

QString AboutDlg::versionText() const
{
    return m_version->text();
}

QString AboutDlg::systemText() const
{
    return m_system->text();
}

void AboutDlg::OpenSupport()
{
    const QString link = LinkFromStore(QStringLiteral("SupportLink"), DefaultSupportLink());
    if (!link.isEmpty())
        g_openUrl(QUrl(link));
}

void AboutDlg::OpenLicense()
{
    const QString path = LicensePath();
    if (!path.isEmpty())
        g_openUrl(QUrl::fromLocalFile(path));
}

void AboutDlg::Retranslate()
{
    setWindowTitle(tr("About"));
    m_title->setText(windowTitle());
    m_version->setText(tr("Version %1").arg(QStringLiteral(REELWRIGHT_VERSION)));
    m_system->setText(tr("Running on %1 (%2)").arg(ProductName(), QSysInfo::currentCpuArchitecture()));
    // The caption of the support link may come from the store, per language.
    const QString name = LinkFromStore(QStringLiteral("SupportName"), QString());
    SupportBtn->setText(name.isEmpty() ? tr("Support") : name);
    SupportBtn->setVisible(!LinkFromStore(QStringLiteral("SupportLink"), DefaultSupportLink()).isEmpty());
    LicenseBtn->setText(tr("End-User License Agreement"));
    OkBtn->setText(tr("OK"));
}

// The store's link keys and the language can change while the program runs.
void AboutDlg::showEvent(QShowEvent* event)
{
    Retranslate();
    FramelessDialog::showEvent(event);
}

void AboutDlg::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        Retranslate();
    FramelessDialog::changeEvent(event);
}
