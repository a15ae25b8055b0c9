#include "hosts/common/refusal.h"

#include "hosts/common/texts/refusal_texts.h"

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

using enum LibrarySlot;

constexpr LibrarySlots kNew = SlotSet(kMoveTo, kChangeCommand, kAddItem);
constexpr LibrarySlots kChanges = kNew | SlotSet(kDelete, kEnable, kDisable, kSetSwitchedOff);
constexpr LibrarySlots kOfEntry = SlotSet(kDelete, kEnable, kDisable, kMoveTo, kChangeCommand, kExecute,
                                          kShowFileDetails, kShowLocation, kSetSwitchedOff);
constexpr LibrarySlots kAll = ~0u;

constexpr HRESULT Win32Result(DWORD code) noexcept {
  return static_cast<HRESULT>(0x80070000u | code);
}

constexpr Refusal kRefusals[] = {
    {kOfEntry, L"not listed any more", S_FALSE, L"the entry has gone", &texts::kNoMoreListed},
    {kChanges, L"refused without an error", S_FALSE, L"the change was refused", &texts::kWindowsRefused},
    {kAll, L"declined for another reason", S_FALSE, L"", nullptr},
    {kChanges, L"another program changes the entry", Win32Result(ERROR_REVISION_MISMATCH),
     L"changed meanwhile", &texts::kChangedByOther},
    {kChanges, L"the place is another entry's", Win32Result(ERROR_ALREADY_EXISTS), L"another entry",
     &texts::kPlaceTaken},
    {kChanges, L"others change", Win32Result(ERROR_BUSY), L"another change", &texts::kOtherUnderWay},
    {kChanges, L"another process has the journal", Win32Result(ERROR_LOCK_VIOLATION),
     L"System Error.  Code: 33.", &texts::kOtherAtWork},
    {SlotSet(kChangeCommand), L"no command", E_INVALIDARG, L"The command is empty", &texts::kEmptyCommand},
    {kNew, L"too long for the place", Win32Result(ERROR_FILENAME_EXCED_RANGE), L"The ", nullptr},
    {kNew, L"not for a shortcut", Win32Result(ERROR_NOT_SUPPORTED), L"A shortcut cannot hold", nullptr},
    {SlotSet(kMoveTo), L"switched off, and no switch there", Win32Result(ERROR_NOT_SUPPORTED),
     L"The entry is switched off in Task Manager", nullptr},
    {SlotSet(kSetSwitchedOff), L"no switch, or none that is known", Win32Result(ERROR_NOT_SUPPORTED), L"",
     nullptr},
    {kChanges | SlotSet(kReading), L"inside of one already", E_UNEXPECTED, L"A call of this thread",
     &texts::kBusyThread},
    {kOfEntry, L"CanDo says no", E_UNEXPECTED, L"Assertion failure", &texts::kStateForbids},
    {SlotSet(kAddItem), L"an empty text, or a location that takes none", E_UNEXPECTED, L"Assertion failure",
     &texts::kNoSuchEntry},
    {SlotSet(kReading), L"the thread holds the list", E_UNEXPECTED, L"Assertion failure", &texts::kListInUse},
    {kAll, L"a call that fits no state", E_UNEXPECTED, L"", &texts::kNotPossibleNow},
};

}  // namespace

std::span<const Refusal> Refusals() noexcept {
  return kRefusals;
}

const Refusal* FindRefusal(LibrarySlot slot, std::optional<HRESULT> result, std::wstring_view text) noexcept {
  const auto fits = [&](const Refusal& row) {
    if ((row.slots & SlotSet(slot)) == 0 || !text.starts_with(row.text)) return false;
    // Without a result the text alone has to tell.
    return result ? *result == row.result : *row.text != L'\0';
  };
  const auto found = std::ranges::find_if(kRefusals, fits);
  return found == std::end(kRefusals) ? nullptr : &*found;
}

}  // namespace smh
