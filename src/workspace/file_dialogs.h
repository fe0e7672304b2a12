#pragma once
// The file choosers the window asks. The window holds one object of this
// interface; the default shows the toolkit's dialogs, and a test installs
// one that answers by itself.
#include <QString>
#include <QStringList>

class QWidget;

class FileDialogs {
public:
    virtual ~FileDialogs() = default;
    virtual QStringList getOpenFileNames(QWidget* parent, const QString& caption, const QString& dir,
                                         const QString& filter) = 0;
    virtual QString getOpenFileName(QWidget* parent, const QString& caption, const QString& dir,
                                    const QString& filter) = 0;
    virtual QString getExistingDirectory(QWidget* parent, const QString& caption, const QString& dir) = 0;
};

// QFileDialog's static choosers.
class SystemFileDialogs : public FileDialogs {
public:
    QStringList getOpenFileNames(QWidget* parent, const QString& caption, const QString& dir,
                                 const QString& filter) override;
    QString getOpenFileName(QWidget* parent, const QString& caption, const QString& dir,
                            const QString& filter) override;
    QString getExistingDirectory(QWidget* parent, const QString& caption, const QString& dir) override;
};
