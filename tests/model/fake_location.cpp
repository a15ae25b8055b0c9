#include "fake_location.h"

#include "infra/uInterfacesRoutines.h"

#include <algorithm>

namespace smh::test {

namespace {

template <TTypeStartupLocation type, bool isAble>
std::unique_ptr<TLocationStartup> Make() {
  return std::make_unique<FakeLocation>(type, isAble);
}

void RegisterFakes() {
  RegisterLocationClass(Make<sulRegistryUserRun, true>);
  RegisterLocationClass(Make<sulRegistryRunServices, true>);
  RegisterLocationClass(Make<sulRegistryIEBrowserObjects, false>);
}

std::span<const ModuleStep> StepsWithFakes() {
  static std::vector<ModuleStep> steps;
  for (const ModuleStep& step : ModuleSteps()) {
    steps.push_back(step);
    if (step.name == std::wstring_view(L"location classes")) steps.back().start = RegisterFakes;
  }
  return steps;
}

[[maybe_unused]] const bool g_chosen = (stepsUnderTest = StepsWithFakes, true);

FakeLocation& Fake(TTypeStartupLocation type) {
  return dynamic_cast<FakeLocation&>(*FindLocation(type));
}

}  // namespace

FakeLocation& UsualLocation() {
  return Fake(sulRegistryUserRun);
}
FakeLocation& RareLocation() {
  return Fake(sulRegistryRunServices);
}
FakeLocation& FixedLocation() {
  return Fake(sulRegistryIEBrowserObjects);
}

void FakeLocation::SetEntries(std::vector<Entry> entries) {
  const std::scoped_lock lock(lock_);
  entries_ = std::move(entries);
}

void FakeLocation::Reset() {
  SetEntries({});
  reads = 0;
  changed = false;
  failInsert = false;
  onRead = nullptr;
  calls.clear();
}

bool FakeLocation::ItemExists(const TStartupItem& item) {
  const std::scoped_lock lock(lock_);
  return std::ranges::any_of(entries_, [&](const Entry& entry) { return entry.name == item.Name(); });
}

void FakeLocation::ReadItems() {
  ++reads;
  const unsigned generation = Gate().Generation();
  if (onRead) onRead();
  std::vector<Entry> entries;
  {
    const std::scoped_lock lock(lock_);
    entries = entries_;
  }
  FoundNames found;
  for (const Entry& entry : entries) {
    FoundEntry item;
    item.name = entry.name;
    item.caption = entry.name;
    item.command = entry.command;
    if (!AddOrUpdateItem(std::move(item), generation)) return;
    found.insert(entry.name);
  }
  RemoveMissingItems(found, generation);
}

bool FakeLocation::IsChanged() {
  return changed.exchange(false);
}

int FakeLocation::ExtractItem(bool checkpoint, const ItemRef& item) {
  TLocationStartup::ExtractItem(checkpoint, item);
  calls.push_back(L"extract " + item->Name());
  const std::scoped_lock lock(lock_);
  extracted_ = {{item->Name(), item->Details().Command}};
  std::erase_if(entries_, [&](const Entry& entry) { return entry.name == item->Name(); });
  return Items().Remove(*item);
}

void FakeLocation::InsertItem(bool checkpoint, int extracted, bool enabled, const std::wstring& command,
                              const std::wstring& entryName) {
  TLocationStartup::InsertItem(checkpoint, extracted, enabled, command, entryName);
  calls.push_back(L"insert " + std::to_wstring(extracted) + (enabled ? L" on " : L" off ") + command + L' ' +
                  entryName);
  if (failInsert) throw EOSError(ERROR_DISK_FULL);
  const std::scoped_lock lock(lock_);
  entries_.push_back({entryName, command});
}

void FakeLocation::PutBackItem(bool) {
  calls.push_back(L"put back");
  const std::scoped_lock lock(lock_);
  entries_.insert(entries_.end(), extracted_.begin(), extracted_.end());
}

}  // namespace smh::test
