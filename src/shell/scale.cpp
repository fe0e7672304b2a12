#include "shell/scale.h"

#include <cmath>

float g_dpiScale = 1.0f;
float g_uiScale = 1.0f;

float StepDownScale(float scale)
{
    if (scale == 0.0f)
        return 1.0f;
    if (!(scale > 1.0f) || scale > 5.0f)
        return 0.0f;   // also catches not-a-number
    // Upper bounds of the steps 1.25, 1.5, ... 5.0; the result is the lower bound.
    for (float upper = 1.25f; upper <= 5.0f; upper += 0.25f) {
        if (scale <= upper)
            return upper - 0.25f;
    }
    return 0.0f;
}

float FitScale(int dpi, int workWidth, int workHeight)
{
    float scale = float(dpi) / 96.0f;
    while (scale != 1.0f) {
        if (int(600.0f * scale) <= workHeight && int(850.0f * scale) <= workWidth)
            break;
        scale = StepDownScale(scale);
    }
    if (scale == 0.0f)
        scale = 1.0f;
    return scale;
}

QByteArray FontDpiText(float scale)
{
    return QByteArray::number(int(96.0f * scale));
}

SkinSet SkinSetFor(float scale)
{
    if (scale == 1.0f)
        return SkinSet::Dpi96;
    if (scale == 1.25f)
        return SkinSet::Dpi125;
    if (scale >= 1.5f)
        return SkinSet::Dpi144;
    return SkinSet::None;
}

const char* SkinFolder(SkinSet set)
{
    switch (set) {
    case SkinSet::Dpi96: return "96-DPI";
    case SkinSet::Dpi125: return "125-DPI";
    case SkinSet::Dpi144: return "144-DPI";
    case SkinSet::None: break;
    }
    return "";
}

float FitScaleToArea(float scale, int minWidth, int minHeight, int areaWidth, int areaHeight)
{
    while (scale != 1.0f && scale != 0.0f) {
        if (int(minHeight * scale) <= areaHeight && int(minWidth * scale) <= areaWidth)
            break;
        scale = StepDownScale(scale);
    }
    return scale == 0.0f ? 1.0f : scale;
}
