#include "hosts/gui/location_titles.h"

#include "hosts/common/location_names.h"

#include <iterator>

namespace smh {

namespace {

struct TitleRow {
  const wchar_t* group;
  const wchar_t* name;
  bool user;
};

// From sulFolderUser to sulRegistryCommonRunOnceSetup.
constexpr TitleRow kPlainRows[] = {
    {L"Startup folders", L"Startup folder, this user", true},
    {L"Startup folders", L"Startup folder, all users", false},
    {L"Run keys", L"Run services", false},
    {L"Run keys", L"Run services once", false},
    {L"Run keys", L"Run, this user", true},
    {L"Run keys", L"Run once, this user", true},
    {L"Run keys", L"Run once setup, this user", true},
    {L"Run keys", L"Run, all users", false},
    {L"Run keys", L"Run once, all users", false},
    {L"Run keys", L"Run once setup, all users", false},
};
static_assert(std::size(kPlainRows) == sulRegistryAllRegContextMenuHandlers - kFirstLocation);

// Handlers: five kinds, each for the same five objects in the same order.
constexpr const wchar_t* kHandlerKinds[] = {L"Context menu", L"Drag and drop", L"Columns", L"Property pages",
                                            L"Copy hooks"};
constexpr const wchar_t* kHandlerObjects[] = {L"files", L"files and folders", L"folders on disk",
                                              L"all folders", L"folder background"};
constexpr std::int32_t kObjectCount = std::size(kHandlerObjects);
static_assert(std::size(kHandlerKinds) * kObjectCount ==
              sulRegistryShellExtApproved - sulRegistryAllRegContextMenuHandlers);

// From sulRegistryShellExtApproved on.
constexpr TitleRow kLastRows[] = {
    {L"Other extensions", L"Approved shell extensions", false},
    {L"Other extensions", L"Browser helper objects", false},
    {L"Other extensions", L"URL search hooks, this user", true},
    {L"Other extensions", L"URL search hooks, all users", false},
};
static_assert(std::size(kLastRows) == kLastLocation - sulRegistryShellExtApproved + 1);

bool IsHandler(std::int32_t location) noexcept {
  return location >= sulRegistryAllRegContextMenuHandlers && location < sulRegistryShellExtApproved;
}

const TitleRow* RowOf(std::int32_t location) noexcept {
  if (location < kFirstLocation || location > kLastLocation || IsHandler(location)) return nullptr;
  return location >= sulRegistryShellExtApproved ? &kLastRows[location - sulRegistryShellExtApproved]
                                                 : &kPlainRows[location - kFirstLocation];
}

}  // namespace

LocationTitle TitleOf(std::int32_t location) {
  if (const TitleRow* const row = RowOf(location)) return {row->group, row->name, row->name};
  if (!IsHandler(location)) return {};
  const std::int32_t place = location - sulRegistryAllRegContextMenuHandlers;
  const std::wstring kind = kHandlerKinds[place / kObjectCount];
  const std::wstring object = kHandlerObjects[place % kObjectCount];
  return {kind, object, kind + L": " + object};
}

bool IsUserLocation(std::int32_t location) noexcept {
  const TitleRow* const row = RowOf(location);
  return row != nullptr && row->user;
}

}  // namespace smh
