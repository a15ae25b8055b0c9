// Fields, buttons and boxes in the colours of the theme. For the window's thread.
#pragma once

#include <windows.h>

namespace smh {

// Give the control what it needs to be drawn in the current appearance; called again for every appearance.
void DressEdit(HWND edit);
void DressRichEdit(HWND edit);
void DressButton(HWND button);
void DressComboBox(HWND box);
// Draws the sunken edge of a control as a line, in dark.
void DressEdge(HWND control);

}  // namespace smh
