#pragma once
// The update check: QCheckUpdate fetches the descriptor Reelwright.txt from
// the update folder of the language in use and compares its two versions with
// the installed one; QShowUpdate offers what it found.
#include "workspace/frameless_dialog.h"

#include <QDialog>

class QFile;
class QLabel;
class QNetworkAccessManager;
class QProgressBar;
class QPushButton;
class QTextEdit;

class QCheckUpdate : public QDialog {
    Q_OBJECT
public:
    // Runs the whole check, downloads included, before it returns. The
    // parent is the window the messages and the offer are centred on.
    explicit QCheckUpdate(QWidget* parent = nullptr);

Q_SIGNALS:
    void NoUpdates();

private:
    void RunCheck();
    // "No update available.", only when the button asked; ends the check.
    void SayNoUpdate();
    // "The update check failed: " and why, only when the button asked; ends the check.
    void SayCheckFailed(const QString& why);

    QProgressBar* progressBar;
    QLabel* label;
    QNetworkAccessManager* m_manager;
    QString m_minorVersion;
    QString m_majorVersion;
    QFile* m_descriptor = nullptr;

protected:
    void changeEvent(QEvent* event) override;
};

class QShowUpdate : public FramelessDialog {
    Q_OBJECT
public:
    explicit QShowUpdate(QWidget* parent = nullptr);
    QString message() const;

public Q_SLOTS:
    void DownloadApp();
    void CancelDownload();

private:
    QTextEdit* m_text;
    QPushButton* m_updateBtn;
    QPushButton* m_cancelBtn;

protected:
    void Retranslate() override;
};
