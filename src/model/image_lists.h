// Pairs of image lists, a small and a large one that hold the same icons at the same indexes: what such a
// pair is, and the one with the icons of the items.
//
// Any thread may call. The lists are made on first use, under the pair's image-list lock, which is taken
// alone; an IconSource is asked outside of it. What needs the lists raises EOSError when they cannot
// be made.
#pragma once

#include "infra/files/file_facts.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/module_global.h"
#include "infra/runtime/scoped_image_list.h"
#include "model/icon_source.h"

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

// 16x16 and 32x32, 32-bit colour with mask.
class IconLists {
 public:
  // `fixed` must outlive the object; its icons come first in both lists.
  explicit IconLists(std::span<const FixedIcon> fixed) noexcept : fixed_(fixed) {}
  IconLists(const IconLists&) = delete;
  IconLists& operator=(const IconLists&) = delete;

  // Made together; borrowed until Destroy or the object's end.
  HIMAGELIST Small();
  HIMAGELIST Large();

  // The index in both lists of the icon `index` of `file`, negative for a resource's number; -1 when the file
  // has none or it cannot be appended. The same icon of an unchanged file is appended once. Needs the lists.
  int AppendIcon(IconSource& source, const std::wstring& file, int index);
  // The same, and when there is no such icon the one that the shell shows for `shownFile`.
  int AppendFileIcon(IconSource& source, const std::wstring& file, int index, const std::wstring& shownFile);

  // Whether that icon of the file, as it stands, is among them.
  bool Knows(const std::wstring& file, int index) { return Recall(KeyOf(file, index)) >= 0; }

  // Under the lock. The lists go, whoever still draws with them; the next use makes new ones.
  void Destroy() noexcept;

 private:
  // An icon of a file as it stood when the icon was taken.
  using IconKey = std::tuple<std::wstring, int, FileStamp>;

  static IconKey KeyOf(const std::wstring& file, int index);
  int Recall(const IconKey& key);
  int Remember(const IconKey& key, int index);
  int Append(const IconPair& icons);
  void Create() SMH_NEEDS_LOCK(lock_);
  ScopedImageList MakeList(int side, FixedIconName name) const;

  const std::span<const FixedIcon> fixed_;
  // The image-list lock: guards creation and growth. Taken alone.
  CriticalSection lock_;
  ScopedImageList small_ SMH_GUARDED_BY(lock_);
  ScopedImageList large_ SMH_GUARDED_BY(lock_);
  std::map<IconKey, int> indexes_ SMH_GUARDED_BY(lock_);
};

// The items' pair: the three ratings, the unknown file, then the icons of files. Owned by the module and
// valid until DestroyImageLists. From the module's start to its stop; before and after, these and the
// following raise EAssertionFailed.
HIMAGELIST SmallImageList();
HIMAGELIST LargeImageList();

// The index of an icon in both lists: the icon `index` of `iconFile`, else what the shell shows for
// `shownFile`, else the unknown file's. The same icon of an unchanged file is appended once. Needs the lists.
int AppendFileIcon(IconSource& source, const std::wstring& iconFile, int index,
                   const std::wstring& shownFile);

// Whether that icon is among them already, of the file as it stands. As above.
bool IsIconKnown(const std::wstring& iconFile, int index);

// Destroys the items' pair; the next use makes a new one. Only between the module's start and its stop.
void DestroyImageLists() noexcept;

// The items' pair, from the module's start to its stop.
struct ItemIcons;
extern ModuleGlobal<ItemIcons> g_itemIcons;

}  // namespace smh
