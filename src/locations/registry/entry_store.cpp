#include "locations/registry/entry_store.h"

#include "infra/runtime/exceptions.h"
#include "model/change_refused.h"

#include <algorithm>
#include <iterator>

namespace smh {

KeptEntry EntryStore::KeepAnew(const RegistryValueAddress& address) const {
  keys_.Forget(address);
  return Keep(address);
}

// A key that was made for the data, and is empty still, is none of anybody else's.
bool EntryStore::StandsOrBare(const RegistryValueAddress& address, const KeptEntry& before) const {
  const KeptEntry now = Keep(address);
  return now == before || (before.empty() && IsBare(now));
}

bool EntryStore::Write(const RegistryValueAddress& address, const RegistryData& data,
                       const KeptEntry& before) const {
  writer_.SetValue(ValueOf(address), data, [&] { return StandsOrBare(address, before); });
  if (DataOf(Keep(address)) == data) return true;
  if (!StandsOrBare(address, before)) RaiseChangedMeanwhile();
  return false;
}

// What is below a key goes before it.
bool EntryStore::DeletePieces(const RegistryWriter& writer, const KeptEntry& kept, const LastLook& arrived,
                              bool& isBegun) const {
  bool isAnswered = true;
  for (auto piece = kept.rbegin(); piece != kept.rend(); ++piece) {
    const LastLook look = [&] {
      if (!arrived() || !StandsAlone(*piece, keys_)) return false;
      return isBegun = true;
    };
    try {
      const bool isDone =
          piece->isKey ? writer.DeleteKey(piece->address, look) : writer.DeleteValue(piece->address, look);
      isAnswered = isAnswered && isDone;
    } catch (const EChangeRefused&) {
      // Gone by another program's hand it needs no deletion, and must not come back.
      if (Exists(*piece, keys_) || !arrived()) throw;
    }
    // What is refused ends it: the rest stays together.
    if (std::next(piece) != kept.rend() && Exists(*piece, keys_)) return false;
  }
  return isAnswered;
}

bool EntryStore::Delete(const RegistryValueAddress& address, const KeptEntry& kept, const LastLook& arrived,
                        bool& isBegun) const {
  // What is more than one piece is not begun when that can be told; of one piece the last look tells it.
  if (kept.size() != 1) {
    const KeptEntry before = Keep(address);
    if (before.empty()) return true;
    if (before != kept) RaiseChangedMeanwhile();
  }
  if (const LSTATUS status = CheckDeletable(kept); status != ERROR_SUCCESS) {
    if (writer_.IsRecorded()) return false;
    RaiseOSError(static_cast<DWORD>(status));
  }
  const bool isAnswered = DeletePieces(writer_, kept, arrived, isBegun);
  const KeptEntry left = Keep(address);
  const auto isKept = [&](const KeptPiece& piece) { return std::ranges::find(kept, piece) != kept.end(); };
  // It has gone: what stands in its place came behind that.
  if (isAnswered && std::ranges::none_of(left, isKept)) return true;
  if (!std::ranges::all_of(left, isKept)) RaiseChangedMeanwhile();
  return left.empty();
}

bool EntryStore::PutBack(const KeptEntry& kept, bool isBegun) const noexcept {
  keys_.ForgetAll();
  for (const KeptPiece& piece : kept) {
    try {
      if (!Exists(piece, keys_)) MakePiece(piece);
    } catch (...) {
      // The others are put back all the same.
    }
  }
  try {
    return std::ranges::all_of(
        kept, [&](const KeptPiece& piece) { return isBegun ? Stands(piece, keys_) : Exists(piece, keys_); });
  } catch (...) {
    return false;
  }
}

bool EntryStore::TakeBack(const RegistryValueAddress& address, const RegistryData& data,
                          const KeptEntry& before) const noexcept {
  const RegistryWriter plain(false, keys_);
  try {
    const KeptEntry now = KeepAnew(address);
    if (now == before) return true;
    const bool isOurs = now.size() == 1 && now.front().data == data;
    if (!isOurs && !(before.empty() && IsBare(now))) return false;
    if (before.empty()) {
      bool isBegun = false;
      DeletePieces(
          plain, now, [] { return true; }, isBegun);
    } else {
      plain.SetValue(ValueOf(address), *before.front().data, [&] { return Keep(address) == now; });
    }
    return Keep(address) == before;
  } catch (...) {
    return false;
  }
}

RegistryValueAddress SubkeyStore::ValueOf(const RegistryValueAddress& address) const {
  RegistryValueAddress value = address;
  value.valueName.clear();
  return value;
}

}  // namespace smh
