// Sizes given in pixels, on screens of any density.
#pragma once

// Pixels of a screen with 96 dots per inch in pixels of this one. The system answers 96 to programs that leave the
// scaling to it.
int ScaledPixels(int pixels);
