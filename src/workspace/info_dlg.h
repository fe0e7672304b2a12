#pragma once
#include <QDialog>

class QLabel;

// Modal message dialog with one button.
class InfoDlgClass : public QDialog {
    Q_OBJECT
public:
    explicit InfoDlgClass(QWidget* parent = nullptr);
    void setText(const QString& text);
    QString text() const;

private:
    QLabel* m_label;
};
