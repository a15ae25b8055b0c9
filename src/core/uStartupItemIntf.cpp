#include "core/uStartupItemIntf.h"

#include "core/contracts/boundary_call.h"
#include "core/contracts/uDllGlobals.h"
#include "core/contracts/variant_values.h"
#include "core/detail_properties.h"
#include "core/item_facts.h"
#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/assertion.h"
#include "model/effective_states.h"
#include "model/item_list.h"
#include "model/uLocationStartup.h"
#include "shelllink/uShellLinkInfo.h"
#include "sysutil/command_line.h"
#include "sysutil/uFileUtils.h"

namespace smh {

namespace {

constexpr wchar_t kUnit[] = L"uStartupItemIntf";

TLocationStartup& LocationOf(const TStartupItem& item) {
  // CanDoAction has seen the location.
  return *FindLocation(item.Location());
}

// `index` is an ItemProperty; VT_NULL for an unknown one.
VARIANT ItemPropertyValue(const TStartupItem& item, std::int32_t index) {
  if (index == kPropertyLocation) return NumberVariant(item.Location());
  return item.Get([&](const ItemState& state) {
    return index == kPropertyEnabled ? BooleanVariant(state.isEnabled)
                                     : DetailPropertyValue(state.details, index);
  });
}

// What was not found by its name the shell would look for where the host stands.
DWORD RunThroughShell(HWND window, const CommandParts& parts) {
  if (!IsFullPath(parts.path)) return ERROR_FILE_NOT_FOUND;
  if (IsRefusedLink(std::wstring(parts.path))) return ERROR_BAD_FORMAT;
  return OpenWithShell(window, parts.path, parts.arguments, FileUtils::GetProfileDir());
}

// Starts the command through the shell, in the folder in which the system would, on the calling thread, which
// waits for the shell and for the message box, without a lock. `window` owns both and may be null. A failure
// is logged, shown in a message box and then raised as EOSError.
void ExecuteItem(const TStartupItem& item, HWND window) {
  SharedText command;
  {
    ScopedLock lock(Items().Lock());
    command = item.Get([](const ItemState& state) { return state.details.Command; });
  }
  const CommandParts parts = ResolveCommand(command.c_str());
  const DWORD code = RunThroughShell(window, parts);
  if (code == ERROR_SUCCESS) return;
  const std::wstring error = SystemErrorText(code);
  LogFormat(L"Error execute command for item \"%s\". Command: \"%s\". Error: \"%s\".", item.Name(), command,
            error);
  ShowMessageBoxOwned(window, error, MB_ICONERROR);
  RaiseOSError(code);
}

}  // namespace

bool CanDoAction(const TStartupItem& item, std::int32_t action) {
  const TLocationStartup* const location = FindLocation(item.Location());
  if (location == nullptr) return false;
  const bool canChange = !item.IsProtected();
  switch (action) {
    case kActionDelete:
      return canChange && location->CanDelete();
    case kActionEnable:
      return canChange && location->CanEnable() && !item.IsEnabled();
    case kActionDisable:
      return canChange && location->CanEnable() && item.IsEnabled();
    case kActionMove:
      return canChange && location->CanModify();
    case kActionChangeCommand:
      return canChange && location->GetCanModify();
    case kActionExecute:
      return item.Get([](const ItemState& state) {
        return !state.details.Command.empty() && state.details.Kind != TargetKind::kOther;
      });
    case kActionShowFileDetails:
      return item.Get(
          [](const ItemState& state) { return state.details.FileFound && !state.details.FilePath.empty(); });
    case kActionShowLocation:
      return true;
    default:
      return false;
  }
}

ItemRef TStartupItemIntf::Item() const noexcept {
  ItemRef item = item_.lock();
  if (item != nullptr && !item->IsListed()) item.reset();
  return item;
}

template <typename Change>
HRESULT TStartupItemIntf::Run(ItemAction action, int line, Change&& change) noexcept {
  return BoundaryOutcome([&]() -> std::wstring {
    const ItemRef item = Item();
    if (item == nullptr) return ChangeAnswer::Gone().text;
    if (!CanDoAction(*item, action)) RaiseAssertion(kUnit, line);
    return change(item).text;
  });
}

std::int32_t TStartupItemIntf::GetIndex() {
  return BoundaryValue(-1, [&] {
    const ItemRef item = Item();
    if (item == nullptr) return -1;
    ScopedLock lock(Items().Lock());
    return item->Position();
  });
}

std::int32_t TStartupItemIntf::GetLocation() {
  return BoundaryValue(std::int32_t(sulNone), [&] {
    const ItemRef item = Item();
    return std::int32_t(item == nullptr ? sulNone : item->Location());
  });
}

HRESULT TStartupItemIntf::GetName(BoundaryText* name) {
  return BoundaryResult(name, [&] {
    *name = nullptr;
    if (const ItemRef item = Item()) *name = MakeBoundaryText(item->Name());
  });
}

BOOL TStartupItemIntf::ReadChanged() {
  return BoundaryValue(TRUE, [&] {
    const ItemRef item = Item();
    return item == nullptr || item->TakeChangedMark() ? TRUE : FALSE;
  });
}

std::int32_t TStartupItemIntf::GetImageIndex() {
  return BoundaryValue(-1, [&] {
    const ItemRef item = Item();
    return item == nullptr ? -1 : item->Get([](const ItemState& state) { return state.details.ImageIndex; });
  });
}

HRESULT TStartupItemIntf::GetProperty(std::int32_t index, VARIANT* value) {
  return BoundaryResult(value, [&] {
    *value = NullVariant();
    if (const ItemRef item = Item()) *value = ItemPropertyValue(*item, index);
  });
}

BOOL TStartupItemIntf::CanDo(std::int32_t action) {
  return BoundaryValue(FALSE, [&] {
    const ItemRef item = Item();
    return item != nullptr && CanDoAction(*item, action) ? TRUE : FALSE;
  });
}

BOOL TStartupItemIntf::CanMoveTo(std::int32_t location) {
  return BoundaryValue(FALSE, [&] {
    const ItemRef item = Item();
    if (item == nullptr) return FALSE;
    if (location == item->Location()) return TRUE;
    TLocationStartup* const target = FindLocation(static_cast<TTypeStartupLocation>(location));
    return target != nullptr && target->CanAcceptItem(*item) ? TRUE : FALSE;
  });
}

HRESULT TStartupItemIntf::Delete() {
  return Run(kActionDelete, __LINE__, [](const ItemRef& item) { return LocationOf(*item).DeleteItem(item); });
}

HRESULT TStartupItemIntf::Enable() {
  return Run(kActionEnable, __LINE__, [](const ItemRef& item) { return LocationOf(*item).EnableItem(item); });
}

HRESULT TStartupItemIntf::Disable() {
  return Run(kActionDisable, __LINE__,
             [](const ItemRef& item) { return LocationOf(*item).DisableItem(item); });
}

HRESULT TStartupItemIntf::MoveTo(std::int32_t location) {
  return Run(kActionMove, __LINE__, [&](const ItemRef& item) {
    SMH_ASSERT(kUnit, location != sulNone);
    if (location == item->Location()) return ChangeAnswer::Nothing();
    return LocationOf(*item).MoveItem(item, static_cast<TTypeStartupLocation>(location));
  });
}

HRESULT TStartupItemIntf::ChangeCommand(const wchar_t* command) {
  return Run(kActionChangeCommand, __LINE__, [&](const ItemRef& item) {
    return LocationOf(*item).ChangeItemCommand(item, std::wstring(TextArgument(command)));
  });
}

HRESULT TStartupItemIntf::Execute(HWND window) {
  return Run(kActionExecute, __LINE__, [&](const ItemRef& item) {
    ExecuteItem(*item, window);
    return ChangeAnswer();
  });
}

HRESULT TStartupItemIntf::ShowFileDetails(HWND window) {
  return Run(kActionShowFileDetails, __LINE__, [&](const ItemRef& item) {
    const SharedText file = item->Get([](const ItemState& state) { return state.details.FilePath; });
    if (IsRefusedLink(std::wstring(file))) RaiseOSError(ERROR_BAD_FORMAT);
    const HRESULT shown = DLLGlobals::ShellDialogs().ShowFileDetails(window, file.c_str(), L"", 0);
    if (FAILED(shown)) throw EOleSysError(shown);
    return ChangeAnswer();
  });
}

HRESULT TStartupItemIntf::ShowLocation() {
  return Run(kActionShowLocation, __LINE__, [](const ItemRef& item) {
    LocationOf(*item).ShowItemLocation(*item);
    return ChangeAnswer();
  });
}

HRESULT TStartupItemIntf::GetFact(std::int32_t index, VARIANT* value) {
  return BoundaryResult(value, [&] {
    *value = NullVariant();
    if (const ItemRef item = Item()) *value = ItemFactValue(*item, index);
  });
}

HRESULT TStartupItemIntf::SetSwitchedOff(BOOL off) {
  return BoundaryOutcome([&]() -> std::wstring {
    const ItemRef item = Item();
    if (item == nullptr) return ChangeAnswer::Gone().text;
    SMH_ASSERT(kUnit, EffectiveStateOf(*item).canSwitch);
    return LocationOf(*item).SetItemSwitchedOff(item, BooleanArgument(off)).text;
  });
}

}  // namespace smh
