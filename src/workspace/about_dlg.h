#pragma once
// About: the program's name and version, the operating system it runs on,
// and buttons for the maker's support page and the end-user agreement.
#include "workspace/frameless_dialog.h"

class QLabel;
class QPushButton;

class AboutDlg : public FramelessDialog {
    Q_OBJECT
public:
    explicit AboutDlg(QWidget* parent = nullptr);

    QString versionText() const;
    QString systemText() const;

public Q_SLOTS:
    void OpenSupport();
    void OpenLicense();

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void Retranslate();

    QLabel* m_title;
    QLabel* m_name;
    QLabel* m_version;
    QLabel* m_system;
    QPushButton* m_close;
    QPushButton* SupportBtn;
    QPushButton* LicenseBtn;
    QPushButton* OkBtn;
};
