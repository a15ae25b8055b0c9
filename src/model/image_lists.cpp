#include "model/image_lists.h"

#include "infra/critical_section.h"
#include "infra/exceptions.h"
#include "infra/scoped_image_list.h"
#include "infra/uInterfacesRoutines.h"
#include "model/item_details.h"

#include <shellapi.h>

#include <map>
#include <memory>
#include <tuple>

// The module this code lies in; its resources hold the fixed icons.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace smh {

namespace {

constexpr int kInitialSize = 4;
constexpr int kGrowth = 4;
constexpr int kSmallSide = 16;
constexpr int kLargeSide = 32;

struct FixedIcon {
  const wchar_t* smallName;
  const wchar_t* largeName;
};
constexpr FixedIcon kFixedIcons[] = {
    {L"RATING_TRUST", L"RATING_TRUST"},
    {L"RATING_UNKNOWN", L"RATING_UNKNOWN"},
    {L"RATING_RISKY", L"RATING_RISKY"},
    {L"IMG_UNKNOWN_SMALL", L"IMG_UNKNOWN_LARGE"},
};

struct IconPair {
  ScopedIcon large;
  ScopedIcon small;
};

// An icon of a file as it stood when the icon was taken.
using IconKey = std::tuple<std::wstring, int, std::uint64_t>;

struct ImageLists {
  // The image-list lock: guards creation and growth. Taken alone.
  CriticalSection lock;
  ScopedImageList small;
  ScopedImageList large;
  std::map<IconKey, int> indexes;
};

ImageLists* g_lists = nullptr;

ScopedImageList MakeList(int side, const wchar_t* FixedIcon::*name) {
  ScopedImageList list(ImageList_Create(side, side, ILC_COLOR32 | ILC_MASK, kInitialSize, kGrowth));
  if (!list) RaiseLastOSError();
  const auto module = reinterpret_cast<HINSTANCE>(&__ImageBase);
  for (const FixedIcon& row : kFixedIcons) {
    const ScopedIcon icon(
        static_cast<HICON>(LoadImageW(module, row.*name, IMAGE_ICON, side, side, LR_DEFAULTCOLOR)));
    if (!icon || ImageList_ReplaceIcon(list.Get(), -1, icon.Get()) < 0) RaiseLastOSError();
  }
  return list;
}

void CreateLists(ImageLists& lists) {
  if (lists.large) return;
  ScopedImageList large = MakeList(kLargeSide, &FixedIcon::largeName);
  lists.small = MakeList(kSmallSide, &FixedIcon::smallName);
  lists.large = std::move(large);
}

IconPair ExtractIcons(const std::wstring& file, int index) {
  HICON large = nullptr;
  HICON small = nullptr;
  const UINT count = ExtractIconExW(file.c_str(), index, &large, &small, 1);
  IconPair icons;
  // Without an icon, or without the file (UINT_MAX), the outputs may hold anything.
  if (count == 0 || count == UINT_MAX) return icons;
  icons.large.Reset(large);
  icons.small.Reset(small);
  return icons;
}

IconPair ShellIcons(const std::wstring& file) {
  const auto ask = [&](UINT size) {
    SHFILEINFOW info = {};
    return SHGetFileInfoW(file.c_str(), 0, &info, sizeof(info), SHGFI_ICON | size) == 0 ? nullptr
                                                                                        : info.hIcon;
  };
  IconPair icons;
  icons.large.Reset(ask(SHGFI_LARGEICON));
  icons.small.Reset(ask(SHGFI_SMALLICON));
  return icons;
}

// The new index, or -1; both lists stay of one length. Of a single icon both sizes are made.
int AppendPair(const IconPair& icons) {
  const HICON large = icons.large ? icons.large.Get() : icons.small.Get();
  const HICON small = icons.small ? icons.small.Get() : icons.large.Get();
  if (large == nullptr) return -1;
  ScopedLock lock(g_lists->lock);
  CreateLists(*g_lists);
  const int index = ImageList_ReplaceIcon(g_lists->large.Get(), -1, large);
  if (index < 0) return -1;
  if (ImageList_ReplaceIcon(g_lists->small.Get(), -1, small) == index) return index;
  ImageList_SetImageCount(g_lists->small.Get(), static_cast<UINT>(index));
  ImageList_Remove(g_lists->large.Get(), index);
  return -1;
}

int Remember(const IconKey& key, int index) {
  ScopedLock lock(g_lists->lock);
  return g_lists->indexes.emplace(key, index).first->second;
}

std::uint64_t LastWriteTime(const std::wstring& file) noexcept {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data) == FALSE) return 0;
  return (static_cast<std::uint64_t>(data.ftLastWriteTime.dwHighDateTime) << 32) |
         data.ftLastWriteTime.dwLowDateTime;
}

}  // namespace

HIMAGELIST SmallImageList() {
  ScopedLock lock(g_lists->lock);
  CreateLists(*g_lists);
  return g_lists->small.Get();
}

HIMAGELIST LargeImageList() {
  ScopedLock lock(g_lists->lock);
  CreateLists(*g_lists);
  return g_lists->large.Get();
}

int AppendFileIcon(const std::wstring& iconFile, int index, const std::wstring& shownFile) {
  const IconKey key(AsciiLowerCase(iconFile), index, LastWriteTime(iconFile));
  {
    ScopedLock lock(g_lists->lock);
    if (const auto known = g_lists->indexes.find(key); known != g_lists->indexes.end()) return known->second;
  }
  const IconPair extracted = ExtractIcons(iconFile, index);
  if (const int appended = AppendPair(extracted); appended >= 0) return Remember(key, appended);
  const int shown = AppendPair(ShellIcons(shownFile));
  if (shown < 0) return kImageUnknownFile;
  // What the shell shows for one file says nothing about another one with the same icon file.
  return iconFile == shownFile ? Remember(key, shown) : shown;
}

void DestroyImageLists() noexcept {
  ScopedLock lock(g_lists->lock);
  g_lists->indexes.clear();
  g_lists->small.Reset();
  g_lists->large.Reset();
}

void StartImageLists() {
  g_lists = new ImageLists();
}

void StopImageLists() noexcept {
  if (g_lists == nullptr) return;
  DestroyImageLists();
  delete std::exchange(g_lists, nullptr);
}

}  // namespace smh
