// A button for programs that read the screen.
#pragma once

#include "hosts/gui/accessible_model.h"
#include "hosts/gui/texts/frame_texts.h"

namespace smh {

// Reads everything from the control, which it does not own; its text is the name.
class AccessibleButton final : public AccessibleModel {
 public:
  // `description` says what the button is for; may be empty.
  AccessibleButton(HWND button, std::wstring description);

  // See accessible_model.h; there are no children.
  std::wstring Name(int child) const override;
  std::wstring Description(int) const override { return description_; }
  DWORD Role(int child) const override;
  DWORD State(int child) const override;
  RECT Place(int child) const override;
  std::wstring DefaultAction(int) const override { return texts::kActPress.Get(); }
  void DoDefaultAction(int child) override;
  bool Select(int child, LONG flags) override;

 private:
  bool IsSwitch() const;

  const HWND button_;
  const std::wstring description_;
};

}  // namespace smh
