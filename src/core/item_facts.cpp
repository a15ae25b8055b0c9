#include "core/item_facts.h"

#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/uDllGlobals.h"
#include "core/contracts/variant_values.h"
#include "infra/runtime/text.h"
#include "model/effective_states.h"
#include "model/uLocationStartup.h"

#include <algorithm>
#include <optional>

namespace smh {

namespace {

bool IsKey(const TStartupItem& item) noexcept {
  return FamilyOf(LocationRowOf(item.Location())).entriesAreKeys;
}

// The key or the folder that holds the entry. Names of keys may hold "/" and ":".
std::wstring_view PlaceOf(const TStartupItem& item, const ItemState& state) noexcept {
  const bool isValue = state.address.root != nullptr && !IsKey(item);
  const std::wstring_view entry = state.address.root == nullptr ? state.name : state.address.key;
  return isValue ? entry : entry.substr(0, std::min(entry.rfind(L'\\'), entry.size()));
}

// In local time; 0 for what no date can hold.
VARIANT DateOf(const FILETIME& time) {
  double date = 0;
  const bool isSet = time.dwLowDateTime != 0 || time.dwHighDateTime != 0;
  return DateVariant(isSet && SUCCEEDED(DLLGlobals::Helper().FileTimeToDateTime(&time, &date)) ? date : 0);
}

VARIANT AnswerVariant(const std::optional<StartsAnswer>& answer) {
  return answer ? NumberVariant(*answer) : NullVariant();
}

bool IsEffectiveFact(std::int32_t index) noexcept {
  return (index >= kFactStarts && index <= kFactCanSwitch) || index == kFactStarts64 ||
         index == kFactStarts32;
}

// What is known of the system's say.
VARIANT EffectiveFact(const TStartupItem& item, std::int32_t index) {
  const EffectiveState state = EffectiveStateOf(item);
  switch (index) {
    case kFactStarts:
      return NumberVariant(state.starts);
    case kFactStartReasons:
      return NumberVariant(state.reasons);
    case kFactSwitchedOffSince:
      return (state.reasons & kReasonSwitchedOff) != 0 ? DateOf(state.switchedOffSince) : NullVariant();
    case kFactCanSwitch:
      return BooleanVariant(state.canSwitch);
    case kFactStarts64:
      return AnswerVariant(state.starts64);
    default:
      return AnswerVariant(state.starts32);
  }
}

VARIANT DisabledByVariant(const TStartupItem& item) {
  // Before the item's lock is taken.
  const TLocationStartup* const location = FindLocation(item.Location());
  return item.Get([&](const ItemState& state) {
    if (state.isEnabled) return TextVariant({});
    const std::wstring_view place = PlaceOf(item, state);
    const bool isOwn = location != nullptr && SameText(place, location->OwnSide());
    return TextVariant(isOwn ? std::wstring_view(kDisabledByUs) : place);
  });
}

// For entries of the registry.
VARIANT AddressFact(const TStartupItem& item, const SharedValueAddress& address, std::int32_t index) {
  switch (index) {
    case kFactTwin:
      return NumberVariant(item.Twin());
    case kFactRoot:
      return TextVariant(RootKeyName(address.root));
    case kFactView:
      return NumberVariant(address.viewBits == KEY_WOW64_64KEY ? 64 : 32);
    case kFactKey:
      return TextVariant(address.key);
    case kFactValueName:
      return IsKey(item) ? NullVariant() : TextVariant(address.valueName);
    default:
      return NullVariant();
  }
}

}  // namespace

VARIANT ItemFactValue(const TStartupItem& item, std::int32_t index) {
  if (index == kFactLocation) return NumberVariant(item.Location());
  if (index == kFactDisabledBy) return DisabledByVariant(item);
  if (IsEffectiveFact(index)) return EffectiveFact(item, index);
  if (index == kFactTwinCommand)
    return item.Twin() == kTwinOther ? TextVariant(item.TwinText()) : NullVariant();
  return item.Get([&](const ItemState& state) {
    const VARIANT value = DetailFactValue(state.details, index);
    if (value.vt != VT_NULL || state.address.root == nullptr) return value;
    return AddressFact(item, state.address, index);
  });
}

VARIANT DetailFactValue(const ItemDetails& details, std::int32_t index) {
  switch (index) {
    case kFactReachability:
      return NumberVariant(details.Reachability);
    case kFactDescribedFile:
      return TextVariant(details.FilePath);
    case kFactServedFile:
      return TextVariant(details.ServedFile);
    case kFactStartedThrough:
      return TextVariant(details.StartedThrough);
    default:
      return NullVariant();
  }
}

}  // namespace smh
