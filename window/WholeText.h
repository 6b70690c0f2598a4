// Labels that show the whole of their text, however long it is.
#pragma once

#include "window/CWnd.h"

// Lets a label of a dialog grow with its text, and the dialog with the label; what stands below moves down. Where the
// dialog would become taller than the screen's work area, a read-only field that scrolls takes the label's place and
// id, as the last stop of Tab. The label's style has SS_NOPREFIX and SS_EDITCONTROL, which breaks words that are wider
// than it. To be called before the dialog is placed and shown.
void ShowWholeText(CWnd& dialog, int label);
