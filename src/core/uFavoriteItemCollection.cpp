#include "core/uFavoriteItemCollection.h"

#include "clients/client_facts.h"
#include "clients/favorite_list.h"
#include "core/contracts/boundary_call.h"
#include "core/uFavoriteItemIntf.h"
#include "infra/runtime/assertion.h"
#include "infra/runtime/process_end.h"
#include "infra/runtime/text.h"

namespace smh {

namespace {

constexpr wchar_t kUnit[] = L"uFavoriteItemCollection";

}  // namespace

TFavoriteItemCollection::TFavoriteItemCollection() {
  FetchReaderServices();
  reader_.Start([this] { FavoriteReader(list_, reader_).Execute(); });
}

TFavoriteItemCollection::~TFavoriteItemCollection() {
  // The reader may be waiting for the lock that whoever released the collection still holds.
  while (list_.Lock().IsHeldByCaller()) list_.Lock().Leave();
  reader_.Stop();
}

void TFavoriteItemCollection::Destroy() noexcept {
  if (!IsProcessEnding()) delete this;
}

std::int32_t TFavoriteItemCollection::GetCount() {
  return BoundaryValue(0, [this] { return list_.Count(); });
}

HRESULT TFavoriteItemCollection::GetItem(std::int32_t index, IFavoriteItem** item) {
  bool found = true;
  const HRESULT result = BoundaryResult(item, [&] {
    TFavoriteItem* const entry = list_.At(index);
    found = entry != nullptr;
    if (found) *item = new TFavoriteItemIntf(*this, *entry);
  });
  return found ? result : S_FALSE;
}

HIMAGELIST TFavoriteItemCollection::GetSmallImageList() {
  return BoundaryValue(HIMAGELIST(), [this] { return list_.Icons().Small(); });
}

HIMAGELIST TFavoriteItemCollection::GetLargeImageList() {
  return BoundaryValue(HIMAGELIST(), [this] { return list_.Icons().Large(); });
}

HRESULT TFavoriteItemCollection::AddPath(const wchar_t* path) {
  return BoundaryResult([&] {
    const std::wstring text(TextArgument(path));
    SMH_ASSERT(kUnit, !Trim(text).empty());
    list_.Append(IdentityOfPath(text));
    SetEvent(reader_.Wake());
  });
}

HRESULT TFavoriteItemCollection::Lock() {
  // Left by another call of the host.
  return BoundaryResult([this]() SMH_UNCHECKED_LOCKS { list_.Lock().Enter(); });
}

HRESULT TFavoriteItemCollection::Unlock() {
  return BoundaryResult([this]() SMH_UNCHECKED_LOCKS {
    SMH_ASSERT(kUnit, list_.Lock().IsHeldByCaller());
    list_.Lock().Leave();
  });
}

std::int32_t TFavoriteItemCollection::GetReadState() {
  return BoundaryValue(std::int32_t(kReadStateReading), [this] { return std::int32_t(list_.State.load()); });
}

}  // namespace smh
