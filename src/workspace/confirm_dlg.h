#pragma once
// Modal question with Yes (YesBtn) and Cancel (CancelBtn). The answer goes to
// g_confirmYes; closing by the title control sets g_confirmClosed.
#include "workspace/frameless_dialog.h"

class QLabel;

class ConfirmDlgClass : public FramelessDialog {
    Q_OBJECT
public:
    explicit ConfirmDlgClass(QWidget* parent = nullptr);
    void setText(const QString& text);
    QString text() const;
    QLabel* label() const { return m_label; }

private Q_SLOTS:
    void OnYes();
    void OnCancel();
    void OnClose();

private:
    QLabel* m_label;

protected:
    void Retranslate() override;
};
