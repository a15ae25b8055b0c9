#include "model/image_lists.h"

#include "model/icon_lists.h"
#include "model/item_details.h"

#include <iterator>
#include <utility>

namespace smh {

namespace {

constexpr FixedIcon kFixedIcons[] = {
    {L"RATING_TRUST", L"RATING_TRUST"},
    {L"RATING_UNKNOWN", L"RATING_UNKNOWN"},
    {L"RATING_RISKY", L"RATING_RISKY"},
    kUnknownFileIcon,
};
static_assert(std::size(kFixedIcons) == kImageUnknownFile + 1);

IconLists* g_lists = nullptr;

}  // namespace

HIMAGELIST SmallImageList() {
  return g_lists->Small();
}

HIMAGELIST LargeImageList() {
  return g_lists->Large();
}

int AppendFileIcon(const std::wstring& iconFile, int index, const std::wstring& shownFile) {
  const int appended = g_lists->AppendFileIcon(iconFile, index, shownFile);
  return appended < 0 ? kImageUnknownFile : appended;
}

void DestroyImageLists() noexcept {
  g_lists->Destroy();
}

void StartImageLists() {
  g_lists = new IconLists(kFixedIcons);
}

void StopImageLists() noexcept {
  delete std::exchange(g_lists, nullptr);
}

}  // namespace smh
