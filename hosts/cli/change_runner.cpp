#include "hosts/cli/change_runner.h"

#include "hosts/cli/console.h"
#include "hosts/cli/item_selector.h"
#include "hosts/common/host_error.h"
#include "hosts/common/location_names.h"
#include "hosts/common/reading.h"

#include <algorithm>

namespace smh {

namespace {

// The very same entry in the same state. The name alone is not enough: an entry of another key may take the
// path over when this one leaves it.
bool IsSameEntry(const ItemRecord& a, const ItemRecord& b) {
  return a.location == b.location && a.enabled == b.enabled && a.name == b.name && a.command == b.command;
}

bool Contains(std::span<const ItemRecord> list, const ItemRecord& item) {
  return std::any_of(list.begin(), list.end(),
                     [&item](const ItemRecord& other) { return IsSameEntry(item, other); });
}

std::wstring FailureOf(const Change& change, const ItemRecord& item) {
  return std::wstring(L"Cannot ").append(change.verb).append(L" ").append(Describe(item));
}

// The entries that ITEMs mean, each once.
std::vector<ItemRecord> SelectTargets(std::span<const ItemRecord> list, const Arguments& arguments) {
  std::vector<ItemRecord> targets;
  for (const std::wstring& text : arguments.items) {
    const ItemRecord& item = SelectItem(list, text, arguments.Location());
    if (!Contains(targets, item)) targets.push_back(item);
  }
  return targets;
}

// Without the entries that need no change. Raises HostError when one cannot be changed.
std::vector<ItemRecord> CheckTargets(const Library& library, std::vector<ItemRecord> targets,
                                     const Change& change) {
  std::vector<ItemRecord> accepted;
  for (ItemRecord& item : targets) {
    const Verdict verdict = change.check(item, *RequireListedItem(library, item));
    if (verdict.kind == Verdict::Kind::kRefused) {
      throw HostError(FailureOf(change, item) + L": " + verdict.reason + L" Nothing was changed.");
    }
    if (verdict.kind == Verdict::Kind::kNothingToDo) {
      WriteMessage(Describe(item) + L": " + verdict.reason);
    } else {
      accepted.push_back(std::move(item));
    }
  }
  return accepted;
}

}  // namespace

std::wstring FindFault(const Change& change, const ItemRecord& before, std::span<const ItemRecord> listBefore,
                       std::span<const ItemRecord> listNow) {
  if (Contains(listNow, before)) return L"the entry is still there as it was.";
  if (!change.isOutcome) return {};
  const bool found = std::any_of(listNow.begin(), listNow.end(), [&](const ItemRecord& now) {
    return change.isOutcome(before, now) && !Contains(listBefore, now);
  });
  return found ? std::wstring() : L"the entry is not where it should be now.";
}

void ApplyChange(const Change& change, const ItemRecord& item, IStartupItem& listed) {
  CheckDone(change.apply(listed), FailureOf(change, item), change.slot);
}

std::wstring RefusalReason(const ItemRecord& item) {
  return L"entries of " + std::wstring(LocationName(item.location)) +
         L" do not allow it, or this account may not write there.";
}

void ChangeItems(const Arguments& arguments, const Change& change) {
  const Library library;
  if (change.prepare) change.prepare(library);
  std::vector<ItemRecord> list = ReadAllItems(library);
  const std::vector<ItemRecord> targets = CheckTargets(library, SelectTargets(list, arguments), change);
  for (const ItemRecord& item : targets) {
    ApplyChange(change, item, *RequireListedItem(library, item));
    std::vector<ItemRecord> listNow = ReadAllItems(library);
    const std::wstring fault = FindFault(change, item, list, listNow);
    if (!fault.empty()) throw HostError(FailureOf(change, item) + L": " + fault);
    WriteMessage(std::wstring(change.done) + L" " + Describe(item) + change.target + L".");
    list = std::move(listNow);
  }
}

}  // namespace smh
