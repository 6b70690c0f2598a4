#pragma once

#include "window/CWnd.h"

// A label or a status field; its text is all there is to it.
class CStatic : public CWnd {};
