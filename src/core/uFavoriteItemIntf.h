// The host's view of one default program. StartupManagerHelper.h has the contract of its slots.
#pragma once

#include "clients/uFavoriteItem.h"
#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/com_object.h"

namespace smh {

// Any thread may use it. Holds no copy: every slot reads the item under its lock.
class TFavoriteItemIntf final : public ComObject<IFavoriteItem, IStartupItemFacts> {
 public:
  // Keeps the collection, which owns the item, alive.
  TFavoriteItemIntf(IFavoriteItemCollection& collection, TFavoriteItem& item) noexcept
      : collection_(&collection), item_(item) {}

  std::int32_t STDMETHODCALLTYPE GetIndex() override;
  std::int32_t STDMETHODCALLTYPE GetKind() override;
  HRESULT STDMETHODCALLTYPE GetName(BoundaryText* name) override;
  BOOL STDMETHODCALLTYPE ReadChanged() override;
  std::int32_t STDMETHODCALLTYPE GetImageIndex() override;
  HRESULT STDMETHODCALLTYPE GetProperty(std::int32_t index, VARIANT* value) override;
  HRESULT STDMETHODCALLTYPE GetFact(std::int32_t index, VARIANT* value) override;
  HRESULT STDMETHODCALLTYPE SetSwitchedOff(BOOL off) override;

 private:
  const ComPtr<IFavoriteItemCollection> collection_;
  TFavoriteItem& item_;
};

}  // namespace smh
