// A small and a large image list that hold the same icons at the same indexes.
#pragma once

#include "infra/files/file_facts.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/scoped_image_list.h"

#include <windows.h>
#include <commctrl.h>

#include <map>
#include <span>
#include <string>
#include <tuple>

namespace smh {

// Names of the module's icon resources, literals.
struct FixedIcon {
  const wchar_t* smallName;
  const wchar_t* largeName;
};
using FixedIconName = const wchar_t* FixedIcon::*;

// What shows a file whose icon is not known; the last of the fixed icons of every list.
inline constexpr FixedIcon kUnknownFileIcon = {L"IMG_UNKNOWN_SMALL", L"IMG_UNKNOWN_LARGE"};

// 16x16 and 32x32, 32-bit colour with mask. May be used from any thread; files are read outside the lock.
class IconLists {
 public:
  // `fixed` must outlive the object; its icons come first in both lists.
  explicit IconLists(std::span<const FixedIcon> fixed) noexcept : fixed_(fixed) {}
  IconLists(const IconLists&) = delete;
  IconLists& operator=(const IconLists&) = delete;

  // Created together on first use; borrowed until Destroy or the object's end. Raise EOSError when they
  // cannot be made.
  HIMAGELIST Small();
  HIMAGELIST Large();

  // The index in both lists of the icon `index` of `file`, negative for a resource's number; -1 when the file
  // has none or it cannot be appended. The same icon of an unchanged file is appended once. Raises EOSError
  // when the lists cannot be made.
  int AppendIcon(const std::wstring& file, int index);
  // The same, and when there is no such icon the one that the shell shows for `shownFile`.
  int AppendFileIcon(const std::wstring& file, int index, const std::wstring& shownFile);

  // The lists go, whoever still draws with them; the next use makes new ones.
  void Destroy() noexcept;

 private:
  struct IconPair {
    ScopedIcon large;
    ScopedIcon small;
  };
  // An icon of a file as it stood when the icon was taken.
  using IconKey = std::tuple<std::wstring, int, FileStamp>;

  static IconKey KeyOf(const std::wstring& file, int index);
  static IconPair ExtractIcons(const std::wstring& file, int index);
  static IconPair ShellIcons(const std::wstring& file);
  int Recall(const IconKey& key);
  int Remember(const IconKey& key, int index);
  int Append(const IconPair& icons);
  void Create();
  ScopedImageList MakeList(int side, FixedIconName name) const;

  const std::span<const FixedIcon> fixed_;
  // The image-list lock: guards creation and growth. Taken alone.
  CriticalSection lock_;
  ScopedImageList small_;
  ScopedImageList large_;
  std::map<IconKey, int> indexes_;
};

}  // namespace smh
