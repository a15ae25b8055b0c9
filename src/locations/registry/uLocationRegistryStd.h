// The Run-key locations: every value of a Run key is an entry, its name the entry's name, its data the
// command line. Disabled entries live in side keys; the first is this system's own and the only one it
// writes, the others hold what other tools have disabled, listed as disabled and enabled the same way.
#pragma once

#include "locations/registry/key_watch.h"
#include "locations/registry/value_changes.h"
#include "model/uLocationStartup.h"

#include <optional>

namespace smh {

enum class RegistryRoot { kCurrentUser, kLocalMachine };

// What tells one Run-key location from another.
struct RunKeyClass {
  const wchar_t* className;
  TTypeStartupLocation type;
  RegistryRoot root;
  const wchar_t* keyPath;
  const wchar_t* disabledKeyPaths[4];
};

class TLocationRegistryStd final : public TLocationStartup {
 public:
  // Arms the change watch. Raises EOSError when its event cannot be made.
  explicit TLocationRegistryStd(const RunKeyClass& row);

  bool ItemExists(const TStartupItem& item) override;
  void ReadItems() override;
  bool IsChanged() override;
  int ExtractItem(bool checkpoint, const ItemRef& item) override;
  void InsertItem(bool checkpoint, int extracted, bool enabled, const std::wstring& command,
                  const std::wstring& entryName) override;
  void PutBackItem(bool checkpoint) override;
  bool CanAcceptItem(const TStartupItem& item) override;
  int AddItem(const std::wstring& name, const std::wstring& command) override;
  void DeleteItem(const ItemRef& item) override;
  void EnableItem(const ItemRef& item) override;
  void DisableItem(const ItemRef& item) override;
  void ChangeItemCommand(const ItemRef& item, const std::wstring& command) override;
  void ShowItemLocation(const TStartupItem& item) override;

 private:
  // What an extracted entry was.
  struct Extracted {
    ItemRef item;
    int position;
    RegistryValueAddress address;
    RegistryData data;
  };
  struct Load;

  bool Owns(const TStartupItem& item) const noexcept { return item.Location() == LocationType(); }
  const wchar_t* KeyPath(bool enabled) const noexcept {
    return enabled ? row_.keyPath : row_.disabledKeyPaths[0];
  }
  // The view new entries are made in.
  static REGSAM OwnView();

  void LoadItems();
  bool ReadKey(Load& load, const wchar_t* path, REGSAM view);
  bool TakeValue(Load& load, const RegistryValueReader& values, FoundEntry entry);
  bool Prune(Load& load);

  void SwitchItem(const ItemRef& item, bool enable);
  int AddValue(const std::wstring& name, const std::wstring& command);
  void RewriteValue(const ItemRef& item, const std::wstring& command);
  std::wstring ItemLine(std::wstring_view format, const std::wstring& itemName) const;

  const RunKeyClass& row_;
  const HKEY root_;
  KeyWatch watch_;
  std::optional<Extracted> extracted_;
};

}  // namespace smh
