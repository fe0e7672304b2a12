#include "workspace/file_dialogs.h"

#include <QFileDialog>

QStringList SystemFileDialogs::getOpenFileNames(QWidget* parent, const QString& caption, const QString& dir,
                                                const QString& filter)
{
    return QFileDialog::getOpenFileNames(parent, caption, dir, filter);
}

QString SystemFileDialogs::getOpenFileName(QWidget* parent, const QString& caption, const QString& dir,
                                           const QString& filter)
{
    return QFileDialog::getOpenFileName(parent, caption, dir, filter);
}

QString SystemFileDialogs::getExistingDirectory(QWidget* parent, const QString& caption, const QString& dir)
{
    return QFileDialog::getExistingDirectory(parent, caption, dir);
}
