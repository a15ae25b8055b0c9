// Files that the product makes in folders of its own, where somebody else may have put a link in the way:
// what a link leads to is neither read, written nor replaced. No state; any thread.
#pragma once

#include "infra/runtime/handle.h"

#include <windows.h>

#include <array>
#include <cstddef>
#include <string>

namespace smh {

// Folders of a path, made when they are missing, checked to be no links, and held in place while the object
// lives. Uses kernel32 alone and allocates nothing.
class HeldFolders {
 public:
  // Those between the first `base` units of the path, the place that is taken as it is with its backslash,
  // and the path's last backslash; the folders of the place are made, too. Changes the text for the time of
  // the call.
  HeldFolders(std::wstring& path, std::size_t base) noexcept;

  // Whether all of them are held; otherwise nothing is to be made there.
  bool AreHeld() const noexcept { return areHeld_; }

 private:
  bool HoldOrMake(std::wstring& path, std::size_t base, std::size_t end) noexcept;
  bool Hold(const wchar_t* folder) noexcept;

  static constexpr std::size_t kMost = 4;
  std::array<ScopedHandle, kMost> folders_;
  std::size_t count_ = 0;
  bool areHeld_ = true;
};

// Opens a file as CreateFileW does, but only a plain one with a single name; never what a link leads to. None
// for anything else, with the thread's last error. `disposition` is one that leaves the contents alone.
ScopedHandle OpenOwnFile(const std::wstring& path, DWORD access, DWORD sharing, DWORD disposition) noexcept;

}  // namespace smh
