#include "workspace/my_tree_widget.h"

#include <QKeyEvent>

MyTreeWidget::MyTreeWidget(QWidget* parent)
    : QTreeWidget(parent)
{
}

void MyTreeWidget::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space) {
        event->ignore();   // left unaccepted and not handed on
        return;
    }
    QTreeView::keyPressEvent(event);
}
