// Lists, their headers and trees in the colours of the theme. For the window's thread.
#pragma once

#include "hosts/gui/theme.h"

#include <commctrl.h>

namespace smh {

// Give the control the colours of the current appearance, and what it needs to be drawn in dark; called again
// for every appearance.
void DressList(HWND list);
void DressTree(HWND tree);

// Draws a whole row of a report list, selection and check box included, with texts in `color`. To be called
// in dark only, when the list asks how the row is drawn (CDDS_ITEMPREPAINT); the pictures behind the first
// column are the caller's.
void DrawListRow(HWND list, HDC canvas, int row, COLORREF color);
// Answers a tree's question how it is drawn.
LRESULT DrawTree(NMTVCUSTOMDRAW& draw);

}  // namespace smh
