// The host's view of one item. StartupManagerHelper.h has the contract of its slots.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/com_object.h"
#include "model/uStartupItem.h"

#include <memory>

namespace smh {

class TLocationStartup;

// Refers to an item without keeping it alive and notices when it has left the list; then, or without an item
// from the start, it answers neutral values and its operations do nothing. Any thread may use it. Queries
// take the item's lock; changes run as TLocationStartup says.
class TStartupItemIntf final : public ComObject<IStartupItem, IStartupItemFacts> {
 public:
  // `item` may be null.
  explicit TStartupItemIntf(const ItemRef& item) noexcept : item_(item) {}

  std::int32_t STDMETHODCALLTYPE GetIndex() override;
  std::int32_t STDMETHODCALLTYPE GetLocation() override;
  HRESULT STDMETHODCALLTYPE GetName(BoundaryText* name) override;
  BOOL STDMETHODCALLTYPE ReadChanged() override;
  std::int32_t STDMETHODCALLTYPE GetImageIndex() override;
  HRESULT STDMETHODCALLTYPE GetProperty(std::int32_t index, VARIANT* value) override;
  BOOL STDMETHODCALLTYPE CanDo(std::int32_t action) override;
  BOOL STDMETHODCALLTYPE CanMoveTo(std::int32_t location) override;
  HRESULT STDMETHODCALLTYPE Delete() override;
  HRESULT STDMETHODCALLTYPE Enable() override;
  HRESULT STDMETHODCALLTYPE Disable() override;
  HRESULT STDMETHODCALLTYPE MoveTo(std::int32_t location) override;
  HRESULT STDMETHODCALLTYPE ChangeCommand(const wchar_t* command) override;
  HRESULT STDMETHODCALLTYPE Execute(HWND window) override;
  HRESULT STDMETHODCALLTYPE ShowFileDetails(HWND window) override;
  HRESULT STDMETHODCALLTYPE ShowLocation() override;
  HRESULT STDMETHODCALLTYPE GetFact(std::int32_t index, VARIANT* value) override;
  HRESULT STDMETHODCALLTYPE SetSwitchedOff(BOOL off) override;

 private:
  // The item while it is listed, else null.
  ItemRef Item() const noexcept;
  template <typename Change>
  HRESULT Run(ItemAction action, int line, Change&& change) noexcept;

  const std::weak_ptr<TStartupItem> item_;
};

// Whether an action, an ItemAction, is possible for an item in its present state; false for an unknown one.
// Takes the item's lock; another thread may change the answer right after.
bool CanDoAction(const TStartupItem& item, std::int32_t action);

}  // namespace smh
