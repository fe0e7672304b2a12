#pragma once
// The action button of a result row. It knows its row's id and reports a
// press with it.
#include <QPushButton>

class CustomButton : public QPushButton {
    Q_OBJECT
public:
    explicit CustomButton(QWidget* parent = nullptr);
    unsigned int m_id = 0;

Q_SIGNALS:
    void MousePressed(unsigned int id);

protected:
    void mousePressEvent(QMouseEvent* event) override;
};
