#pragma once
// Second step of Advance Repair (g_referenceDlg): the user picks a healthy
// sample video and starts the reference pass. The window connects
// RefRepairBtn and refe_CheckBox to its own slots.
#include "workspace/frameless_dialog.h"

class FileDialogs;
class QCheckBox;
class QLabel;
class QPushButton;
class QTextEdit;

class ReferenceFileDlg : public FramelessDialog {
    Q_OBJECT
public:
    ReferenceFileDlg(QWidget* parent, const QString& path);

    // The chooser behind Browse; not owned.
    void SetFileDialogs(FileDialogs* dialogs) { m_fileDialogs = dialogs; }

    // Empties the path field, unchecks and disables the box, and gives
    // RefRepairBtn its look, disabled until a sample is chosen.
    void ResetForNewSample();

    // Stores the sample for the engine; a pending forget request drops it.
    static void SetReferencePath(const QString& path);

    QTextEdit* RefPath_Edit;
    QPushButton* RefBrowse_Btn;
    QCheckBox* refe_CheckBox;
    QPushButton* RefRepairBtn;
    QPushButton* cancle;

Q_SIGNALS:
    void RepairFile();

public Q_SLOTS:
    void OnBrowseRefrenceFile();
    void OnHideDialog();
    void OnCancle();

private:
    QLabel* String_label;
    FileDialogs* m_fileDialogs = nullptr;

protected:
    void Retranslate() override;
};
