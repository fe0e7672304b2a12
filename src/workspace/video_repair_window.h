#pragma once
#include <QWidget>

class ThreadVideoRepair;

// The main window.
class VideoRepairWindow : public QWidget {
    Q_OBJECT
public:
    explicit VideoRepairWindow(QWidget* parent = nullptr);
    ~VideoRepairWindow() override;
    void StartFadeIn();

private:
    ThreadVideoRepair* m_repairThread;
};
