#include "model/image_lists.h"

#include "model/icon_lists.h"
#include "model/item_details.h"

#include <iterator>

namespace smh {

namespace {

constexpr FixedIcon kFixedIcons[] = {
    {L"RATING_TRUST", L"RATING_TRUST"},
    {L"RATING_UNKNOWN", L"RATING_UNKNOWN"},
    {L"RATING_RISKY", L"RATING_RISKY"},
    kUnknownFileIcon,
};
static_assert(std::size(kFixedIcons) == kImageUnknownFile + 1);

}  // namespace

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

int AppendFileIcon(const std::wstring& iconFile, int index, const std::wstring& shownFile) {
  const int appended = g_itemIcons->AppendFileIcon(iconFile, index, shownFile);
  return appended < 0 ? kImageUnknownFile : appended;
}

void DestroyImageLists() noexcept {
  g_itemIcons->Destroy();
}

}  // namespace smh
