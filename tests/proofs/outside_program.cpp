#include "tests/proofs/outside_program.h"

#include "tests/support/file_fixture.h"

#include <filesystem>

namespace smh::test {

namespace {

namespace fs = std::filesystem;

RawValue Theirs(Verb verb) {
  const std::wstring text = kProgram + L" /mark-o";
  return verb == Verb::kRetype ? RawValue{REG_BINARY, UnitBytes(text)} : Sz(text);
}

// Beside the place; below it when it is a key.
Place Neighbour(Place place, const wchar_t* tail) {
  if (place.IsFile()) {
    place.key.insert(place.key.rfind(L'.'), tail);
  } else if (IsKeyEntry(place)) {
    place.key += tail;
  } else {
    place.name = place.name.substr(0, 200) + tail;
  }
  return place;
}

void Remove(const Place& place) {
  if (place.IsFile()) {
    fs::remove(place.key);
  } else if (IsKeyEntry(place)) {
    DeleteKeyTree(place.root, place.key, place.view);
  } else {
    RemoveValue(place.root, place.key, place.name, place.view);
  }
}

}  // namespace

bool OutsideProgram::Rename(const Act& act) {
  written_ = Neighbour(act.place, L" renamed");
  if (act.place.IsFile()) {
    fs::rename(act.place.key, written_.key);
    return true;
  }
  const auto value = GetValue(act.place.root, act.place.key, act.place.name, act.place.view);
  if (!value) return false;
  SetValue(written_.root, written_.key, written_.name, *value, written_.view);
  Remove(act.place);
  return true;
}

bool OutsideProgram::Perform(const Act& act) {
  const bool isThere = met_.contains(act.place);
  switch (act.verb) {
    case Verb::kAppear:
      written_ = Neighbour(act.place, IsKeyEntry(act.place) ? L"\\beside" : L" beside");
      [[fallthrough]];
    case Verb::kSet:
    case Verb::kRetype:
      if (written_.IsFile()) {
        world_.PutShortcut(written_.key, L"/mark-o");
      } else {
        SetValue(written_.root, written_.key, written_.name, Theirs(act.verb), written_.view);
      }
      return true;
    case Verb::kRename:
      return isThere && Rename(act);
    case Verb::kDelete:
      if (isThere) Remove(act.place);
      return isThere;
    case Verb::kRemoveKey:
      DeleteKeyTree(act.place.root, act.place.key, act.place.view);
      return true;
    case Verb::kJournal:
      WriteFileBytes(act.place.key + L"\\theirs", "theirs");
      fs::rename(act.place.key, act.place.key + L" renamed");
      return true;
  }
  return false;
}

void OutsideProgram::Do(const Act& act) {
  met_ = world_.Entries();
  written_ = act.place;
  try {
    isDone_ = Perform(act);
  } catch (const std::exception&) {
    // It is kept from it: the file is held.
  }
  left_ = world_.Entries();
  // One that somebody has open is shown until it is closed.
  if (act.verb == Verb::kDelete) left_.erase(act.place);
}

}  // namespace smh::test
