// The object behind IStartupManager: hands out the objects that reach the module-wide state, resolves command
// lines, and opens and closes the log session. StartupManagerHelper.h has the contract of its slots.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/com_object.h"

namespace smh {

// The process has one, see module_start.h. Its end clears the list and the images and saves the log.
class TStartupManager final : public ComObject<IStartupManager> {
 public:
  // Opens the log session: reads what the log says about the system, and loads basekit for it.
  TStartupManager();

  HRESULT STDMETHODCALLTYPE GetStartupItems(IStartupItemCollection** items) override;
  HRESULT STDMETHODCALLTYPE GetFavoriteItems(IFavoriteItemCollection** items) override;
  HRESULT STDMETHODCALLTYPE GetStrings(IStartupManagerStrings** strings) override;
  HRESULT STDMETHODCALLTYPE ResolveCommandFile(const wchar_t* command, BoundaryText* file) override;

 private:
  ~TStartupManager() override;

  // Made by the first GetStartupItems; that call is expected from one thread.
  ComPtr<IStartupItemCollection> items_;
};

}  // namespace smh
