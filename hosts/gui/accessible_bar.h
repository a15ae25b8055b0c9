// A tool bar for programs that read the screen.
#pragma once

#include "hosts/gui/accessible_model.h"
#include "hosts/gui/bar_keys.h"

#include <functional>

namespace smh {

// Reads everything from the control, which it does not own.
class AccessibleBar final : public AccessibleModel {
 public:
  // What the button of a command is for, with its keys in parentheses at the end: "Undo the change (Ctrl+Z)".
  using Tip = std::function<std::wstring(UINT command)>;
  // `keys` outlives the model.
  AccessibleBar(HWND bar, std::wstring name, BarKeys& keys, Tip tip);

  // See accessible_model.h. A button is named by its label, and without one by its tip.
  int Count() const override;
  std::wstring Name(int child) const override;
  std::wstring Description(int child) const override;
  std::wstring Keys(int child) const override;
  DWORD Role(int child) const override;
  DWORD State(int child) const override;
  RECT Place(int child) const override;
  int HitTest(POINT point) const override;
  int Focused() const override { return keys_.Chosen() + 1; }
  std::wstring DefaultAction(int child) const override;
  void DoDefaultAction(int child) override;
  bool Select(int child, LONG flags) override;

 private:
  const HWND bar_;
  const std::wstring name_;
  BarKeys& keys_;
  const Tip tip_;
};

}  // namespace smh
