// The host's list of default programs. StartupManagerHelper.h has the contract of its slots.
#pragma once

#include "clients/favorite_list.h"
#include "clients/living_collections.h"
#include "core/contracts/com_object.h"
#include "model/parkable_thread.h"

namespace smh {

// Owns its entries, image lists and reader. The reader refers to it without keeping it alive, wrappers of its
// entries keep it. Any thread may use it; StartupManagerHelper.h has the contract of its slots.
class TFavoriteItemCollection final : public ComObject<IFavoriteItemCollection>, private LivingCollection {
 public:
  // Fetches the services that the reader needs and starts it. Raises EOSError.
  TFavoriteItemCollection();

  std::int32_t STDMETHODCALLTYPE GetCount() override;
  HRESULT STDMETHODCALLTYPE GetItem(std::int32_t index, IFavoriteItem** item) override;
  HIMAGELIST STDMETHODCALLTYPE GetSmallImageList() override;
  HIMAGELIST STDMETHODCALLTYPE GetLargeImageList() override;
  HRESULT STDMETHODCALLTYPE AddPath(const wchar_t* path) override;
  HRESULT STDMETHODCALLTYPE Lock() override;
  HRESULT STDMETHODCALLTYPE Unlock() override;
  std::int32_t STDMETHODCALLTYPE GetReadState() override;

 private:
  // Ends the reader and waits for it.
  ~TFavoriteItemCollection() override;

  ParkableThread& Reader() noexcept override { return reader_; }
  // At process exit, where the reader is gone wherever it was, nothing is destroyed.
  void Destroy() noexcept override;

  FavoriteList list_;
  ParkableThread reader_;
};

}  // namespace smh
