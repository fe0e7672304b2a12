#pragma once
// The tree of both lists. The Space key is swallowed so that the keyboard
// can't toggle a row's check box; every other key goes to the view.
#include <QTreeWidget>

class MyTreeWidget : public QTreeWidget {
    Q_OBJECT
public:
    explicit MyTreeWidget(QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};
