// Registry keys and values made and looked at by tests, straight through the platform. Paths are relative to
// `root`; `view` is 0, KEY_WOW64_64KEY or KEY_WOW64_32KEY. What fails unexpectedly throws std::runtime_error.
#pragma once

#include "infra/runtime/handle.h"
#include "tests/support/known_keys.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace smh::test {

using Bytes = std::vector<std::byte>;

struct RawValue {
  DWORD type = REG_NONE;
  Bytes bytes;
  bool operator==(const RawValue&) const = default;
};

// Text with its terminating NUL; texts of a list with both.
RawValue Sz(std::wstring_view text);
RawValue ExpandSz(std::wstring_view text);
RawValue MultiSz(const std::vector<std::wstring>& texts);
RawValue Dword(DWORD number);
RawValue Binary(std::string_view bytes);
// A text without its terminator; "(none)" for no value.
std::wstring TextOf(const std::optional<RawValue>& value);
// The units of the text and nothing else: no terminator.
Bytes UnitBytes(std::wstring_view units);

ScopedKey MakeKey(HKEY root, const std::wstring& path, REGSAM view = 0);
bool KeyIsThere(HKEY root, const std::wstring& path, REGSAM view = 0);
// Does nothing when there is no such key. A registry link goes itself, not what it leads to.
void DeleteKeyTree(HKEY root, const std::wstring& path, REGSAM view = 0);
// A registry link to an open key.
void MakeLink(HKEY root, const std::wstring& path, HKEY target, REGSAM view = 0);
std::vector<std::wstring> SubKeys(HKEY root, const std::wstring& path, REGSAM view = 0);
std::vector<std::wstring> Values(HKEY root, const std::wstring& path, REGSAM view = 0);

// Makes missing keys.
void SetValue(HKEY root, const std::wstring& path, const std::wstring& name, const RawValue& value,
              REGSAM view = 0);
// None for a missing value or key.
std::optional<RawValue> GetValue(HKEY root, const std::wstring& path, const std::wstring& name,
                                 REGSAM view = 0);
void RemoveValue(HKEY root, const std::wstring& path, const std::wstring& name, REGSAM view = 0);
// Values whose names may hold NULs, which the usual calls cannot make.
void SetCountedValue(HKEY key, std::wstring_view name, const RawValue& value);
void RemoveCountedValue(HKEY key, std::wstring_view name);

// A key tree of a test's own: made empty at the beginning, deleted at the end.
class RegistryTree {
 public:
  explicit RegistryTree(std::wstring path, HKEY root = HKEY_CURRENT_USER, REGSAM view = 0);
  ~RegistryTree();
  RegistryTree(const RegistryTree&) = delete;
  RegistryTree& operator=(const RegistryTree&) = delete;

  REGSAM View() const noexcept { return view_; }
  const std::wstring& Path() const noexcept { return path_; }
  std::wstring PathOf(std::wstring_view sub) const;

  // `sub` is relative to the tree's top; empty means the top itself.
  ScopedKey Key(std::wstring_view sub = {}) const { return MakeKey(root_, PathOf(sub), view_); }
  bool Has(std::wstring_view sub) const { return KeyIsThere(root_, PathOf(sub), view_); }
  void Set(std::wstring_view sub, const std::wstring& name, const RawValue& value) const {
    SetValue(root_, PathOf(sub), name, value, view_);
  }
  std::optional<RawValue> Get(std::wstring_view sub, const std::wstring& name) const {
    return GetValue(root_, PathOf(sub), name, view_);
  }

 private:
  std::wstring path_;
  HKEY root_;
  REGSAM view_;
};

// The values and subkeys of an existing or missing key, put back at the end.
class SavedKey {
 public:
  SavedKey(HKEY root, std::wstring path, REGSAM view = 0);
  ~SavedKey();
  SavedKey(const SavedKey&) = delete;
  SavedKey& operator=(const SavedKey&) = delete;

 private:
  struct Node {
    std::wstring path;
    std::vector<std::pair<std::wstring, RawValue>> values;
  };
  void Gather(const std::wstring& path);

  HKEY root_;
  std::wstring path_;
  REGSAM view_;
  std::vector<Node> nodes_;
};

// Key trees in every view of both roots: emptied for a test, put back at its end.
class EmptiedKeys {
 public:
  explicit EmptiedKeys(const std::vector<std::wstring>& paths);

 private:
  std::vector<std::unique_ptr<SavedKey>> saved_;
};

// Takes rights away from a key until the end of the scope.
class LimitedKey {
 public:
  enum class Rights { kReadOnly, kNone };
  LimitedKey(HKEY root, const std::wstring& path, Rights rights, REGSAM view = 0);
  ~LimitedKey();
  LimitedKey(const LimitedKey&) = delete;
  LimitedKey& operator=(const LimitedKey&) = delete;

 private:
  ScopedKey key_;
};

// Whether this is a 64-bit Windows, where the registry has two views.
bool HasTwoViews();
// The view that the library lists first and makes new entries in.
REGSAM OwnView();

}  // namespace smh::test
