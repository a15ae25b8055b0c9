#include "hosts/gui/accessible_progress.h"

#include "hosts/gui/window.h"

#include <commctrl.h>
#include <oleacc.h>

#include <algorithm>

namespace smh {

std::wstring AccessibleProgress::Name(int) const {
  return TextOf(GetParent(control_));
}

std::wstring AccessibleProgress::Value(int) const {
  if ((GetWindowLongW(control_, GWL_STYLE) & PBS_MARQUEE) != 0) return {};
  const LRESULT all = std::max<LRESULT>(SendMessageW(control_, PBM_GETRANGE, FALSE, 0), 1);
  return std::to_wstring(SendMessageW(control_, PBM_GETPOS, 0, 0) * 100 / all) + L"%";
}

DWORD AccessibleProgress::Role(int) const {
  return ROLE_SYSTEM_PROGRESSBAR;
}

DWORD AccessibleProgress::State(int) const {
  return STATE_SYSTEM_READONLY | (IsWindowVisible(control_) != FALSE ? 0 : STATE_SYSTEM_INVISIBLE);
}

RECT AccessibleProgress::Place(int) const {
  RECT place = {};
  GetClientRect(control_, &place);
  return place;
}

}  // namespace smh
