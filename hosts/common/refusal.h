// What the library refuses, and what the hosts say then: its contract (StartupManagerHelper.h) as a table.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "hosts/common/text.h"

#include <optional>
#include <span>
#include <string_view>

namespace smh {

// Slots that refuse each in its own way. The first ones are those of an entry, by their actions.
enum class LibrarySlot : unsigned {
  kDelete = kActionDelete,
  kEnable = kActionEnable,
  kDisable = kActionDisable,
  kMoveTo = kActionMove,
  kChangeCommand = kActionChangeCommand,
  kExecute = kActionExecute,
  kShowFileDetails = kActionShowFileDetails,
  kShowLocation = kActionShowLocation,
  kAddItem,
  kSetSwitchedOff,
  kReading,  // Refresh and Stop
  kOther,
};
constexpr LibrarySlot SlotOf(ItemAction action) noexcept {
  return static_cast<LibrarySlot>(action);
}

// Several of them.
using LibrarySlots = unsigned;
constexpr LibrarySlots SlotSet(auto... slots) noexcept {
  return (0u | ... | (1u << static_cast<unsigned>(slots)));
}

// One reason to refuse, for some slots.
struct Refusal {
  LibrarySlots slots;
  const wchar_t* reason;  // for who reads the table
  HRESULT result;
  const wchar_t* text;  // how the library's text begins
  const Text* words;    // the host's, the end of a sentence; null where the library's text is for people
};

// All of them; of several that fit an answer the first one counts. Any thread, as below.
std::span<const Refusal> Refusals() noexcept;
// The row of an answer, null for a failure that is not foreseen. No `result` where the slot answers none.
const Refusal* FindRefusal(LibrarySlot slot, std::optional<HRESULT> result, std::wstring_view text) noexcept;

}  // namespace smh
