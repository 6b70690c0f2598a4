#include "window/ScreenScale.h"

#include <windows.h>

int ScaledPixels(int pixels) {
  const HDC screen = GetDC(nullptr);
  const int density = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return MulDiv(pixels, density, 96);
}
