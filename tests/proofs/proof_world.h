// The places that the proofs change, emptied for them and put back at the end, and what is in them as text.
#pragma once

#include "model/uLocationStartup.h"
#include "tests/proofs/raw_state.h"
#include "tests/support/startup_folders.h"

namespace smh::test {

// A class with a server in every view.
inline const std::wstring kServedClass = L"{5E1B3A60-0C5D-4F0E-9A3B-6D1C2F7E8A11}";

inline const std::wstring kRunOnceKey = kRunKey + L"Once";
inline const std::wstring kRunOnceSide = kRunOnceKey + L"\\Disabled (Startup Manager)";

// Task Manager's switches, in their lists.
inline const std::wstring kSwitches =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved";

enum class Views { kBoth, kOwn, kPlain };

// In folders that never change: shortcuts keep the times of their targets' folders.
inline const std::wstring kProgram = L"C:\\windows\\notepad.exe";

class ProofWorld {
 public:
  // The locations let go of renamed folders; false when no module is started here.
  explicit ProofWorld(bool withLocations = true);

  // Everything empty again.
  void Clear() const;
  // The folders of disabled entries and the temporary one go.
  void RemoveFolders();
  // In the view of a 64-bit Windows, in the plain one, or both; there may be but one.
  void Put(HKEY root, const std::wstring& key, const std::wstring& name, const RawValue& value,
           Views views = Views::kBoth) const;
  // A shortcut to kProgram; makes the folder.
  void PutShortcut(const std::wstring& file, const std::wstring& arguments) const;

  // What the entry of a scenario is called.
  std::wstring entryName = L"Foo";

  const StartupPlaces& User() const { return *user_; }
  const StartupPlaces& Common() const { return *common_; }

  // Every value, every key that holds nothing, every file with its bytes; not the side keys themselves, and
  // not what lies in the temporary folders.
  RawState Entries() const;
  // The same to the last attribute: keys with their security, files with their times.
  std::string Everything() const;

 private:
  std::vector<std::wstring> Folders() const;

  EmptiedKeys keys_;
  const LetGo letGo_;
  std::optional<StartupPlaces> user_;
  std::optional<StartupPlaces> common_;
};

// What the item list says about the entries: sorted lines of name, state and command. A shortcut's command is
// left out unless asked for: one that could not be read when it was changed is completed by the next load.
std::vector<std::string> ListedEntries(bool withShortcuts = false);
// The same, shortcuts and all, after these locations were read again.
std::vector<std::string> ReadAndList(const std::vector<TTypeStartupLocation>& locations);
// The same after the list was emptied and these locations were read.
std::vector<std::string> ReloadedEntries(const std::vector<TTypeStartupLocation>& locations);

}  // namespace smh::test
