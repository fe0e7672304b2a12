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

// The image set of a scale: exactly 1.0 and 1.25 their own, 1.5 and above
// the 144-dpi set; any other value none (the form's plain look).
enum class SkinSet { None = -1, Dpi96 = 0, Dpi125 = 1, Dpi144 = 2 };
SkinSet SkinSetFor(float scale);
// "96-DPI", "125-DPI", "144-DPI"; empty for None.
const char* SkinFolder(SkinSet set);

// The scale a window of minimum size minWidth x minHeight (design pixels)
// ends with on a screen area of areaWidth x areaHeight: stepped down while
// the window at that scale is wider or higher than the area.
float FitScaleToArea(float scale, int minWidth, int minHeight, int areaWidth, int areaHeight);
