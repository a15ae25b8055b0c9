// A control that shows how far something is, for programs that read the screen.
#pragma once

#include "hosts/gui/accessible_model.h"

namespace smh {

// Reads everything from the control, which it does not own, but its name: that is the text of its parent.
class AccessibleProgress final : public AccessibleModel {
 public:
  explicit AccessibleProgress(HWND control) : control_(control) {}

  // See accessible_model.h; there are no children. The value is "12%", none when nothing is counted.
  std::wstring Name(int child) const override;
  std::wstring Value(int child) const override;
  DWORD Role(int child) const override;
  DWORD State(int child) const override;
  RECT Place(int child) const override;

 private:
  const HWND control_;
};

}  // namespace smh
