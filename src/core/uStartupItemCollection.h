// The host's view of the module-wide item list. StartupManagerHelper.h has the contract of its slots.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/com_object.h"

namespace smh {

// Has no state of its own; any number of objects show the same list. The slots take the item-list lock for a
// look at the list; Refresh and Stop take the control lock and must not be called with the list's.
class TStartupItemCollection final : public ComObject<IStartupItemCollection> {
 public:
  std::int32_t STDMETHODCALLTYPE GetCount() override;
  HRESULT STDMETHODCALLTYPE GetItem(std::int32_t index, IStartupItem** item) override;
  HIMAGELIST STDMETHODCALLTYPE GetSmallImageList() override;
  HIMAGELIST STDMETHODCALLTYPE GetLargeImageList() override;
  std::int32_t STDMETHODCALLTYPE GetReadState() override;
  BOOL STDMETHODCALLTYPE GetShowAllLocations() override;
  HRESULT STDMETHODCALLTYPE SetShowAllLocations(BOOL show) override;
  HRESULT STDMETHODCALLTYPE Refresh() override;
  HRESULT STDMETHODCALLTYPE Stop() override;
  HRESULT STDMETHODCALLTYPE Lock() override;
  HRESULT STDMETHODCALLTYPE Unlock() override;
  std::int32_t STDMETHODCALLTYPE AddItem(std::int32_t location, const wchar_t* name,
                                         const wchar_t* command) override;
  BOOL STDMETHODCALLTYPE GetShowIcons() override;
  HRESULT STDMETHODCALLTYPE SetShowIcons(BOOL show) override;
};

}  // namespace smh
