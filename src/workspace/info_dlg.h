#pragma once
// Modal message dialog with one button (OkBtn).
#include "workspace/frameless_dialog.h"

class QLabel;
class QPushButton;

class InfoDlgClass : public FramelessDialog {
    Q_OBJECT
public:
    explicit InfoDlgClass(QWidget* parent = nullptr);
    void setText(const QString& text);
    QString text() const;

private Q_SLOTS:
    void OnOk();

private:
    QLabel* m_label;
    QPushButton* m_okBtn;

protected:
    void Retranslate() override;
};
