#include "core/uFavoriteItemIntf.h"

#include "core/contracts/boundary_call.h"
#include "core/contracts/variant_values.h"
#include "core/detail_properties.h"
#include "core/item_facts.h"
#include "infra/runtime/assertion.h"

namespace smh {

namespace {

VARIANT PropertyValue(const TFavoriteItem& item, std::int32_t index) {
  switch (index) {
    case kFavoritePropertyKind:
      return NumberVariant(item.Identity().kind);
    case kFavoritePropertyKeyPath:
      return TextVariant(item.Identity().keyPath);
    case kPropertyEnabled:
    case kPropertyLinkNumber:
    case kPropertyRating:
      return NullVariant();
    default:
      return item.Get([index](const ItemDetails& details) { return DetailPropertyValue(details, index); });
  }
}

}  // namespace

std::int32_t TFavoriteItemIntf::GetIndex() {
  return BoundaryValue(-1, [this] { return item_.Position(); });
}

std::int32_t TFavoriteItemIntf::GetKind() {
  return BoundaryValue(std::int32_t(kFavoritePath), [this] { return item_.Identity().kind; });
}

HRESULT TFavoriteItemIntf::GetName(BoundaryText* name) {
  return BoundaryResult(name, [&] {
    *name = nullptr;
    *name = MakeBoundaryText(item_.Identity().name);
  });
}

BOOL TFavoriteItemIntf::ReadChanged() {
  return BoundaryValue(FALSE, [this] { return item_.TakeChangedMark() ? TRUE : FALSE; });
}

std::int32_t TFavoriteItemIntf::GetImageIndex() {
  return BoundaryValue(
      -1, [this] { return item_.Get([](const ItemDetails& details) { return details.ImageIndex; }); });
}

HRESULT TFavoriteItemIntf::GetProperty(std::int32_t index, VARIANT* value) {
  return BoundaryResult(value, [&] {
    *value = NullVariant();
    *value = PropertyValue(item_, index);
  });
}

HRESULT TFavoriteItemIntf::GetFact(std::int32_t index, VARIANT* value) {
  return BoundaryResult(value, [&] {
    *value = NullVariant();
    *value = item_.Get([index](const ItemDetails& details) { return DetailFactValue(details, index); });
  });
}

HRESULT TFavoriteItemIntf::SetSwitchedOff(BOOL) {
  return BoundaryResult([] { RaiseAssertion(L"uFavoriteItemIntf", __LINE__); });
}

}  // namespace smh
