// An edit field for programs that read the screen.
#pragma once

#include "hosts/gui/accessible_model.h"

namespace smh {

// Reads everything from the control, which it does not own; its text is the value.
class AccessibleText final : public AccessibleModel {
 public:
  AccessibleText(HWND edit, std::wstring name, std::wstring keys);

  // See accessible_model.h; there are no children.
  std::wstring Name(int) const override { return name_; }
  std::wstring Value(int child) const override;
  std::wstring Keys(int) const override { return keys_; }
  DWORD Role(int child) const override;
  DWORD State(int child) const override;
  RECT Place(int child) const override;
  bool Select(int child, LONG flags) override;

 private:
  const HWND edit_;
  const std::wstring name_;
  const std::wstring keys_;
};

}  // namespace smh
