#include "model/image_lists.h"

#include "core/contracts/icon_exchange.h"
#include "infra/runtime/ascii_text.h"
#include "infra/runtime/exceptions.h"
#include "model/item_details.h"

#include <climits>
#include <iterator>

// The module this code lies in; its resources hold the fixed icons.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace smh {

namespace {

constexpr int kInitialSize = 4;
constexpr int kGrowth = 4;

// In the place of an icon's index: what the shell shows for a file that names another one's icon.
constexpr int kShellIcon = INT_MIN;

constexpr FixedIcon kFixedIcons[] = {
    {L"RATING_TRUST", L"RATING_TRUST"},
    {L"RATING_UNKNOWN", L"RATING_UNKNOWN"},
    {L"RATING_RISKY", L"RATING_RISKY"},
    kUnknownFileIcon,
};
static_assert(std::size(kFixedIcons) == kImageUnknownFile + 1);

}  // namespace

HIMAGELIST IconLists::Small() {
  ScopedLock lock(lock_);
  Create();
  return small_.Get();
}

HIMAGELIST IconLists::Large() {
  ScopedLock lock(lock_);
  Create();
  return large_.Get();
}

int IconLists::AppendIcon(IconSource& source, const std::wstring& file, int index) {
  const IconKey key = KeyOf(file, index);
  if (const int known = Recall(key); known >= 0) return known;
  const int appended = Append(source.OfFile(file, index));
  return appended < 0 ? appended : Remember(key, appended);
}

int IconLists::AppendFileIcon(IconSource& source, const std::wstring& file, int index,
                              const std::wstring& shownFile) {
  if (file != shownFile) {
    const int appended = AppendIcon(source, file, index);
    if (appended >= 0) return appended;
    // What the shell shows for one file says nothing about another one with the same icon file.
    const IconKey key = KeyOf(shownFile, kShellIcon);
    if (const int known = Recall(key); known >= 0) return known;
    const int shown = Append(source.OfShell(shownFile));
    return shown < 0 ? shown : Remember(key, shown);
  }
  const IconKey key = KeyOf(file, index);
  if (const int known = Recall(key); known >= 0) return known;
  const int appended = Append(source.OfEither(file, index));
  return appended < 0 ? appended : Remember(key, appended);
}

void IconLists::Destroy() noexcept {
  ScopedLock lock(lock_);
  indexes_.clear();
  small_.Reset();
  large_.Reset();
}

IconLists::IconKey IconLists::KeyOf(const std::wstring& file, int index) {
  return {AsciiLowerCase(file), index, StampOf(file).value_or(FileStamp{})};
}

int IconLists::Recall(const IconKey& key) {
  ScopedLock lock(lock_);
  const auto known = indexes_.find(key);
  return known == indexes_.end() ? -1 : known->second;
}

int IconLists::Remember(const IconKey& key, int index) {
  ScopedLock lock(lock_);
  return indexes_.emplace(key, index).first->second;
}

// The new index, or -1; both lists stay of one length. Of a single icon both sizes are made.
int IconLists::Append(const IconPair& icons) {
  const HICON large = icons.large ? icons.large.Get() : icons.small.Get();
  const HICON small = icons.small ? icons.small.Get() : icons.large.Get();
  if (large == nullptr) return -1;
  ScopedLock lock(lock_);
  Create();
  const int index = ImageList_ReplaceIcon(large_.Get(), -1, large);
  if (index < 0) return -1;
  if (ImageList_ReplaceIcon(small_.Get(), -1, small) == index) return index;
  ImageList_SetImageCount(small_.Get(), static_cast<UINT>(index));
  ImageList_Remove(large_.Get(), index);
  return -1;
}

void IconLists::Create() {
  if (large_) return;
  ScopedImageList large = MakeList(kLargeIconSide, &FixedIcon::largeName);
  small_ = MakeList(kSmallIconSide, &FixedIcon::smallName);
  large_ = std::move(large);
}

ScopedImageList IconLists::MakeList(int side, FixedIconName name) const {
  ScopedImageList list(ImageList_Create(side, side, ILC_COLOR32 | ILC_MASK, kInitialSize, kGrowth));
  if (!list) RaiseLastOSError();
  const auto module = reinterpret_cast<HINSTANCE>(&__ImageBase);
  for (const FixedIcon& row : fixed_) {
    const ScopedIcon icon(
        static_cast<HICON>(LoadImageW(module, row.*name, IMAGE_ICON, side, side, LR_DEFAULTCOLOR)));
    if (!icon || ImageList_ReplaceIcon(list.Get(), -1, icon.Get()) < 0) RaiseLastOSError();
  }
  return list;
}

struct ItemIcons : IconLists {
  ItemIcons() noexcept : IconLists(kFixedIcons) {}
};

constinit ModuleGlobal<ItemIcons> g_itemIcons(L"image_lists");

HIMAGELIST SmallImageList() {
  return g_itemIcons->Small();
}

HIMAGELIST LargeImageList() {
  return g_itemIcons->Large();
}

int AppendFileIcon(IconSource& source, const std::wstring& iconFile, int index,
                   const std::wstring& shownFile) {
  const int appended = g_itemIcons->AppendFileIcon(source, iconFile, index, shownFile);
  return appended < 0 ? kImageUnknownFile : appended;
}

bool IsIconKnown(const std::wstring& iconFile, int index) {
  return g_itemIcons->Knows(iconFile, index);
}

void DestroyImageLists() noexcept {
  g_itemIcons->Destroy();
}

}  // namespace smh
