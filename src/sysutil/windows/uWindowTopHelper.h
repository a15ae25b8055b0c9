// The application windows on the desktop.
#pragma once

#include "infra/runtime/scoped_image_list.h"

#include <string>
#include <vector>

namespace smh {

// A window, as it was when the collection was made.
struct TWindowTopItem {
  // 0 for a placeholder: a process that was asked for and has no window.
  DWORD ProcessId = 0;
  // Of the process, without folder.
  std::wstring FileName;
  // The window's title; the file name for a placeholder.
  std::wstring Caption;
  // In the collection's image list; -1 without an icon.
  int ImageIndex = -1;
  // Null for a placeholder.
  HWND Handle = nullptr;
};

// The windows with a title and a system menu that nothing owns, in the order of the desktop, topmost first.
// Not among them are tool windows, and invisible windows without an icon. A snapshot, for one thread; making
// it asks each window for its icon and waits half a second at most for one that hangs.
class TWindowTopCollection {
 public:
  // With a filter (lower-case names of executable files) only the windows of such processes, then a
  // placeholder for every name of which a process runs without a listed window. Raises EOSError, also when a
  // window's process cannot be opened.
  explicit TWindowTopCollection(const std::vector<std::wstring>* filter);

  const std::vector<TWindowTopItem>& Items() const noexcept { return items_; }
  // 16x16, 32-bit colour with mask; owned by the collection.
  HIMAGELIST Images() const noexcept { return images_.Get(); }

 private:
  struct Enumeration;

  void AddWindows(const std::vector<std::wstring>* filter);
  void AddWindow(HWND window, const std::vector<std::wstring>* filter);
  void AddPlaceholders(const std::vector<std::wstring>& filter);
  int AddIcon(HWND window);

  ScopedImageList images_;
  std::vector<TWindowTopItem> items_;
};

}  // namespace smh
