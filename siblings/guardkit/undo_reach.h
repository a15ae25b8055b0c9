// What an undo may touch: a journal says what to write where, but it is no key to the machine.
//
// Within reach are the keys of the start-up locations with their side keys, of this user and of the machine,
// in both views; the keys in which the system keeps its own switches for start-up entries; the Startup
// folders and those of disabled files; and the program's own data folders, but not the journal itself.
#pragma once

#include "siblings/guardkit/format/journal_steps.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace smh {

// For one thread. Files make it ask the shell for its folders; raises std::bad_alloc only.
class UndoReach {
 public:
  // `sid` is the user's who undoes.
  explicit UndoReach(std::wstring sid);

  // Whether undoing it touches nothing else. A key on the way to a location can only be made, and a
  // location's own key only be made or removed, empty; where entries are keys, everything below is within
  // reach.
  bool Covers(const RecordedStep& step) const;
  bool Covers(const JournalContents& checkpoint) const;
  // Whether a place (registry_place.h) may be looked at: one of those keys.
  bool CoversKey(const std::wstring& place) const;
  // Whether a path is a full one, spelled as the system spells it, of a file in one of those folders.
  bool CoversFile(const std::wstring& path) const;

 private:
  // Increasing.
  enum class Rights { kNone, kAsEmptyKey, kValues, kEverything };
  Rights RightsTo(const std::wstring& place) const;
  Rights FindRights(const std::wstring& place) const;
  void Allow(std::wstring_view path, bool user, bool machine, Rights own, Rights below);

  struct Row {
    Rights own = Rights::kNone;
    // To the keys below it.
    Rights below = Rights::kNone;
  };
  using Rows = std::unordered_map<std::wstring, Row>;  // by path below the root, in lower case
  struct Folders {
    std::vector<std::wstring> single;
    // With everything below them, but for one folder in them.
    std::vector<std::wstring> own;
  };
  const Folders& ShellFolders() const;

  const std::wstring sid_;
  Rows user_;
  Rows machine_;
  mutable std::unordered_map<std::wstring, Rights> found_;
  mutable std::optional<Folders> folders_;
};

}  // namespace smh
