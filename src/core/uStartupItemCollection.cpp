#include "core/uStartupItemCollection.h"

#include "core/contracts/boundary_call.h"
#include "core/uStartupItemIntf.h"
#include "infra/runtime/assertion.h"
#include "model/image_lists.h"
#include "model/reader_state.h"
#include "model/reading.h"
#include "model/uLocationStartup.h"

namespace smh {

namespace {

constexpr wchar_t kUnit[] = L"uStartupItemCollection";

}  // namespace

std::int32_t TStartupItemCollection::GetCount() {
  return BoundaryValue(0, [] {
    ScopedLock lock(Items().Lock());
    return Items().Count();
  });
}

HRESULT TStartupItemCollection::GetItem(std::int32_t index, IStartupItem** item) {
  return BoundaryResult(item, [&] {
    *item = nullptr;
    ItemRef found;
    {
      ScopedLock lock(Items().Lock());
      found = Items().At(index);
    }
    *item = new TStartupItemIntf(found);
  });
}

HIMAGELIST TStartupItemCollection::GetSmallImageList() {
  return BoundaryValue(HIMAGELIST(), [] { return SmallImageList(); });
}

HIMAGELIST TStartupItemCollection::GetLargeImageList() {
  return BoundaryValue(HIMAGELIST(), [] { return LargeImageList(); });
}

std::int32_t TStartupItemCollection::GetReadState() {
  return BoundaryValue(std::int32_t(kReadStateReading), [] { return std::int32_t(CurrentReadState()); });
}

BOOL TStartupItemCollection::GetShowAllLocations() {
  return BoundaryValue(FALSE, [] { return ShowAllLocations() ? TRUE : FALSE; });
}

HRESULT TStartupItemCollection::SetShowAllLocations(BOOL show) {
  return BoundaryResult([&] { smh::SetShowAllLocations(BooleanArgument(show)); });
}

HRESULT TStartupItemCollection::Refresh() {
  return BoundaryResult([] { StartReading(); });
}

HRESULT TStartupItemCollection::Stop() {
  return BoundaryResult([] { StopReading(); });
}

HRESULT TStartupItemCollection::Lock() {
  return BoundaryResult([] { LockItems(); });
}

HRESULT TStartupItemCollection::Unlock() {
  return BoundaryResult([] {
    SMH_ASSERT(kUnit, Items().Lock().IsHeldByCaller());
    UnlockItems();
  });
}

std::int32_t TStartupItemCollection::AddItem(std::int32_t location, const wchar_t* name,
                                             const wchar_t* command) {
  return BoundaryValue(-1, [&] {
    const std::wstring nameText(TextArgument(name));
    const std::wstring commandText(TextArgument(command));
    SMH_ASSERT(kUnit, location != sulNone);
    SMH_ASSERT(kUnit, !nameText.empty());
    SMH_ASSERT(kUnit, !commandText.empty());
    TLocationStartup* const target = FindLocation(static_cast<TTypeStartupLocation>(location));
    SMH_ASSERT(kUnit, target != nullptr);
    const ChangeAnswer answer = target->AddItem(nameText, commandText);
    if (!answer.text.empty()) ReportDeclined(answer.text);
    return answer.position;
  });
}

BOOL TStartupItemCollection::GetShowIcons() {
  return BoundaryValue(FALSE, [] { return ShowIcons() ? TRUE : FALSE; });
}

HRESULT TStartupItemCollection::SetShowIcons(BOOL show) {
  return BoundaryResult([&] { smh::SetShowIcons(BooleanArgument(show)); });
}

}  // namespace smh
