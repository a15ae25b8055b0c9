// The two image lists with the icons of the items. Both hold the same icons at the same indexes: the three
// ratings, the unknown file, then the icons of files.
#pragma once

#include "infra/runtime/module_global.h"

#include <windows.h>
#include <commctrl.h>

#include <string>

namespace smh {

// 16x16 and 32x32, 32-bit colour with mask; created together on first use, under the image-list lock. Any
// thread may ask. Owned by the module and valid until DestroyImageLists. Raise EOSError when they cannot be
// made.
HIMAGELIST SmallImageList();
HIMAGELIST LargeImageList();

// The index of an icon in both lists: the icon `index` of `iconFile`, else what the shell shows for
// `shownFile`, else the unknown file's. The same icon of an unchanged file is appended once.
int AppendFileIcon(const std::wstring& iconFile, int index, const std::wstring& shownFile);

// Destroys the lists; the next use makes new ones.
void DestroyImageLists() noexcept;

// Both lists, when they were made.
struct ItemIcons;
extern ModuleGlobal<ItemIcons> g_itemIcons;

}  // namespace smh
