#pragma once
// Where to save the results: beside their sources (the Repaired folder is
// made visible) or copied into a folder the user picks.
#include "workspace/frameless_dialog.h"

class FileDialogs;
class QLabel;
class QPushButton;
class QRadioButton;
class QTextEdit;

class SaveDlgClass : public FramelessDialog {
    Q_OBJECT
public:
    explicit SaveDlgClass(QWidget* parent = nullptr);

    // The chooser behind Browse; not owned.
    void SetFileDialogs(FileDialogs* dialogs) { m_fileDialogs = dialogs; }
    // Puts the dialog in its opening state: source location chosen.
    void Reset();

    QRadioButton* defaultLoc;
    QRadioButton* customLoc;
    QTextEdit* RefPath_Edit;
    QPushButton* LocBrowse_Btn;
    QPushButton* Save;
    QPushButton* cancle;

Q_SIGNALS:
    void CustomLocation(QString folder);
    void SavedMsg();

public Q_SLOTS:
    void OnCancle();
    void OnBrowseBtn();
    void OnChnageLocOfRepairedFiles();
    void OnSaveFiles();
    void OnDefaultLoc();

private:
    QLabel* m_title;
    QString m_customPath;
    FileDialogs* m_fileDialogs = nullptr;

protected:
    void Retranslate() override;
};
