#pragma once
// Display scale: pure logic, tested on its own.
#include <QByteArray>

extern float g_dpiScale;   // scale found at start
extern float g_uiScale;    // scale every geometry uses (1.0 when ResizeAppforDPI is false)

// The next lower quarter step of a scale in (1.0, 5.0]; 1.0 for exactly 0.0;
// 0.0 for anything else (1.0 itself, below 1.0, above 5.0, not a number).
float StepDownScale(float scale);

// The scale for a screen of dpi dots per inch whose work area is
// workWidth x workHeight: dpi / 96, stepped down until the 850 x 600 main
// window fits; 1.0 when nothing fits.
float FitScale(int dpi, int workWidth, int workHeight);

// The value of QT_FONT_DPI for a scale.
QByteArray FontDpiText(float scale);
