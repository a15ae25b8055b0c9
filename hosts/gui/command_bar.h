// The tool bar: which commands it has, and whether they can be used now.
#pragma once

#include "infra/runtime/scoped_image_list.h"

#include <functional>

namespace smh {

class CommandBar {
 public:
  void Create(HWND parent);
  HWND Handle() const noexcept { return bar_; }
  void SetDpi(int dpi, HFONT font);
  int Height() const;
  // Greys what `canRun` denies.
  void Update(const std::function<bool(UINT command)>& canRun) const;
  void ShowButton(UINT command, bool show) const;
  // Gives a tip its text; true when the notification was for one.
  static bool OnNotify(const NMHDR& header);

 private:
  HWND bar_ = nullptr;
  ScopedImageList images_;
  ScopedImageList greyed_;
};

}  // namespace smh
