#include "workspace/save_dlg.h"

#include "shell/scale.h"
#include "workspace/file_dialogs.h"
#include "workspace/workspace_globals.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTextEdit>
#include <QVBoxLayout>

SaveDlgClass::SaveDlgClass(QWidget* parent)
    : FramelessDialog(parent),
      defaultLoc(new QRadioButton(tr("Save repaired file at source location."), this)),
      customLoc(new QRadioButton(tr("Save file at custom location."), this)),
      RefPath_Edit(new QTextEdit(this)),
      LocBrowse_Btn(new QPushButton(tr("Browse"), this)),
      Save(new QPushButton(tr("Save"), this)),
      cancle(new QPushButton(tr("Cancel"), this)),
      m_title(new QLabel(tr("Reelwright "), this))
{
    setObjectName(QStringLiteral("SaveDlgClass"));
    defaultLoc->setObjectName(QStringLiteral("defaultLoc"));
    customLoc->setObjectName(QStringLiteral("customLoc"));
    RefPath_Edit->setObjectName(QStringLiteral("RefPath_Edit"));
    LocBrowse_Btn->setObjectName(QStringLiteral("LocBrowse_Btn"));
    Save->setObjectName(QStringLiteral("Save"));
    cancle->setObjectName(QStringLiteral("cancle"));
    m_title->setObjectName(QStringLiteral("TitleLabl"));

    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    RefPath_Edit->setReadOnly(true);
    RefPath_Edit->setFixedHeight(int(28 * g_uiScale));
    RefPath_Edit->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    RefPath_Edit->setLineWrapMode(QTextEdit::NoWrap);
    RefPath_Edit->setStyleSheet(QStringLiteral("QTextEdit { border: 1px solid #b8c4d6; }"));
    LocBrowse_Btn->setStyleSheet(QStringLiteral("QPushButton:disabled { background: #a9b7cc; color: #eef1f5; }"));
    Save->setStyleSheet(QStringLiteral("QPushButton:disabled { background: #a9b7cc; color: #eef1f5; }"));
    for (QPushButton* b : {LocBrowse_Btn, Save, cancle})
        b->setCursor(Qt::PointingHandCursor);

    connect(defaultLoc, &QRadioButton::clicked, this, &SaveDlgClass::OnDefaultLoc);
    connect(customLoc, &QRadioButton::clicked, this, &SaveDlgClass::OnChnageLocOfRepairedFiles);
    connect(LocBrowse_Btn, &QPushButton::clicked, this, &SaveDlgClass::OnBrowseBtn);
    connect(Save, &QPushButton::clicked, this, &SaveDlgClass::OnSaveFiles);
    connect(cancle, &QPushButton::clicked, this, &SaveDlgClass::OnCancle);

    auto* layout = new QVBoxLayout(this);
    const int m = int(20 * g_uiScale);
    layout->setContentsMargins(m, int(14 * g_uiScale), m, m);
    layout->addWidget(m_title);
    layout->addSpacing(int(6 * g_uiScale));
    layout->addWidget(defaultLoc);
    layout->addWidget(customLoc);
    auto* pathRow = new QHBoxLayout;
    pathRow->setContentsMargins(int(22 * g_uiScale), 0, 0, 0);
    pathRow->addWidget(RefPath_Edit, 1);
    pathRow->addWidget(LocBrowse_Btn);
    layout->addLayout(pathRow);
    layout->addStretch();
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(Save);
    row->addWidget(cancle);
    layout->addLayout(row);
    setFixedSize(int(460 * g_uiScale), int(210 * g_uiScale));
    Reset();
}

void SaveDlgClass::Reset()
{
    LocBrowse_Btn->setEnabled(false);
    defaultLoc->setChecked(true);
    customLoc->setChecked(false);
    RefPath_Edit->clear();
    m_customPath.clear();
    Save->setEnabled(true);
}

void SaveDlgClass::OnDefaultLoc()
{
    LocBrowse_Btn->setEnabled(false);
    RefPath_Edit->clear();
    Save->setEnabled(true);
}

void SaveDlgClass::OnChnageLocOfRepairedFiles()
{
    LocBrowse_Btn->setEnabled(true);
    m_customPath.clear();
    RefPath_Edit->clear();
    Save->setEnabled(false);
}

void SaveDlgClass::OnBrowseBtn()
{
    if (!m_fileDialogs)
        return;
    m_customPath = m_fileDialogs->getExistingDirectory(this, tr("Select Folder"), QStringLiteral("/root"));
    RefPath_Edit->setText(m_customPath);
    Save->setEnabled(!m_customPath.isEmpty());
}

void SaveDlgClass::OnCancle()
{
    close();
    RefPath_Edit->clear();
    g_onSavePage = false;
}

void SaveDlgClass::OnSaveFiles()
{
    g_onSavePage = true;
    if (defaultLoc->isChecked()) {
        LocBrowse_Btn->setEnabled(false);
        emit SavedMsg();
    } else if (customLoc->isChecked() && !m_customPath.isEmpty()) {
        emit CustomLocation(m_customPath);
    }
}

void SaveDlgClass::Retranslate()
{
    defaultLoc->setText(tr("Save repaired file at source location."));
    customLoc->setText(tr("Save file at custom location."));
    LocBrowse_Btn->setText(tr("Browse"));
    Save->setText(tr("Save"));
    cancle->setText(tr("Cancel"));
    m_title->setText(tr("Reelwright "));
}
