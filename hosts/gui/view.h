// One of the views that share the right side of the main window.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace smh {

struct ViewFonts {
  HFONT normal;
  HFONT heading;
};

class View {
 public:
  virtual ~View() = default;
  virtual void Show(bool show) = 0;
  virtual void Place(const RECT& area) = 0;
  virtual void SetDpi(int dpi, const ViewFonts& fonts) = 0;
  // The control that gets the focus with the view.
  virtual HWND MainControl() const = 0;
  // True when the notification was the view's.
  virtual bool OnNotify(const NMHDR& header, LRESULT& result) = 0;
  virtual bool CanRun(UINT command) const = 0;
  // CanRun has said yes.
  virtual void Run(UINT command) = 0;
  virtual void Search(std::wstring_view text) = 0;
  // "3 of 40 entries, 1 selected"
  virtual std::wstring CountText() const = 0;
};

}  // namespace smh
