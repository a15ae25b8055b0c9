#include "tests/proofs/soak_writers.h"

#include "core/contracts/location_table.h"
#include "infra/files/file_facts.h"
#include "samples/link_builder.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/test_main.h"

#include <windows.h>
#include <shlobj.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>

namespace smh::test {

namespace {

namespace fs = std::filesystem;

enum class Kind { kValues, kHandlers, kFiles };

struct SoakPlace {
  Kind kind;
  TTypeStartupLocation location;
  HKEY root;
  REGSAM view;
  // A key, or a folder with a trailing backslash.
  std::wstring path;
};

const std::vector<SoakPlace>& SoakPlaces() {
  static const std::vector<SoakPlace> places = {
      {Kind::kValues, sulRegistryUserRun, HKEY_CURRENT_USER, OwnView(), kRunKey},
      {Kind::kValues, sulRegistryUserRun, HKEY_CURRENT_USER, OwnView(), kRunSide},
      {Kind::kValues, sulRegistryCommonRun, HKEY_LOCAL_MACHINE, OwnView(), kRunKey},
      {Kind::kValues, sulRegistryCommonRun, HKEY_LOCAL_MACHINE, 0, kRunKey},
      {Kind::kHandlers, sulRegistryAllRegContextMenuHandlers, HKEY_LOCAL_MACHINE, OwnView(), kMenusKey},
      {Kind::kHandlers, sulRegistryAllRegContextMenuHandlers, HKEY_LOCAL_MACHINE, 0, kMenusKey},
      {Kind::kFiles, sulFolderUser, nullptr, 0, ShellFolder(CSIDL_STARTUP) + L'\\'},
      {Kind::kFiles, sulFolderCommon, nullptr, 0, ShellFolder(CSIDL_COMMON_STARTUP) + L'\\'},
  };
  return places;
}

// Writes, retypes, renames and deletes what has one of a few names.
class Writer {
 public:
  explicit Writer(int number)
      : place_(SoakPlaces()[static_cast<std::size_t>(number)]),
        random_(static_cast<unsigned>(number) + GetTickCount()) {}

  void Step() {
    const std::wstring name = AnyName();
    const unsigned what = Below(10);
    try {
      if (what < 3) {
        Delete(name);
      } else if (what < 4) {
        Rename(name, AnyName());
      } else {
        Write(name, what);
      }
    } catch (const std::runtime_error&) {
      // Two writers were at one key: some views of handlers are one.
    }
  }
  unsigned Below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

 private:
  std::wstring AnyName() {
    const std::wstring name = L"n" + std::to_wstring(Below(12));
    return place_.kind == Kind::kFiles ? place_.path + name + L".lnk" : name;
  }
  std::wstring KeyOf(const std::wstring& name) const { return place_.path + L'\\' + name; }

  void Delete(const std::wstring& name) const {
    if (place_.kind == Kind::kValues) {
      const ScopedKey key = MakeKey(place_.root, place_.path, place_.view);
      RegDeleteValueW(key.Get(), name.c_str());
    } else if (place_.kind == Kind::kHandlers) {
      DeleteKeyTree(place_.root, KeyOf(name), place_.view);
    } else {
      DeleteFileW(name.c_str());
    }
  }

  void Rename(const std::wstring& from, const std::wstring& to) const {
    if (place_.kind == Kind::kFiles) {
      MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING);
      return;
    }
    const auto value = place_.kind == Kind::kValues ? GetValue(place_.root, place_.path, from, place_.view)
                                                    : GetValue(place_.root, KeyOf(from), L"", place_.view);
    if (!value || from == to) return;
    Set(to, *value);
    Delete(from);
  }

  void Write(const std::wstring& name, unsigned what) {
    const std::wstring number = std::to_wstring(++number_);
    const std::wstring program = what < 7 ? L"C:\\windows\\notepad.exe" : L"C:\\no such\\" + name + L".exe";
    if (place_.kind == Kind::kFiles) {
      LinkBuilder link;
      link.info = LinkInfoSpec{.basePath = fs::path(program).string()};
      // Some are no shortcuts.
      std::ofstream(fs::path(name), std::ios::binary) << (what < 9 ? link.Build().Text() : "no link");
    } else if (place_.kind == Kind::kHandlers) {
      Set(name, what < 8 ? Sz(kSoakClass) : what < 9 ? Sz(L"no class " + number) : Dword(number_));
    } else {
      RawValue value = Sz(L'"' + program + L"\" /" + number);
      if (what == 8) value.type = REG_EXPAND_SZ;
      if (what == 9) value.type = REG_BINARY;
      Set(name, value);
    }
  }

  void Set(const std::wstring& name, const RawValue& value) const {
    const bool isKey = place_.kind == Kind::kHandlers;
    SetValue(place_.root, isKey ? KeyOf(name) : place_.path, isKey ? L"" : name, value, place_.view);
  }

  const SoakPlace& place_;
  std::mt19937 random_;
  DWORD number_ = 0;
};

SMH_CHILD(SoakWriter) {
  const SoakSignals signals(arguments[0]);
  for (Writer writer(std::stoi(arguments[1])); !signals.IsOver(); Sleep(writer.Below(40))) {
    if (signals.IsBusy()) {
      writer.Step();
    } else {
      signals.Rest();
    }
  }
  return 0;
}

void AddEntries(std::vector<std::wstring>& lines, const SoakPlace& place) {
  // An entry of the other view is listed when the own view has none of its name.
  const bool isOther = place.root == HKEY_LOCAL_MACHINE && HasTwoViews() && place.view != OwnView();
  if (place.kind == Kind::kFiles) {
    for (const auto& entry : fs::directory_iterator(place.path)) {
      if (!entry.is_directory()) lines.push_back(SoakLine(place.location, 0, entry.path(), L"-", L""));
    }
  } else if (place.kind == Kind::kHandlers) {
    for (const std::wstring& name : SubKeys(place.root, place.path, place.view)) {
      const auto isListed = [&](REGSAM view) {
        const auto value = GetValue(place.root, place.path + L'\\' + name, L"", view);
        return value && value->type == REG_SZ && TextOf(value) == kSoakClass;
      };
      if (!isListed(place.view) || (isOther && isListed(OwnView()))) continue;
      lines.push_back(SoakLine(place.location, place.view, place.path + L'\\' + name, L"-", L""));
    }
  } else {
    for (const std::wstring& name : Values(place.root, place.path, place.view)) {
      if (isOther && GetValue(place.root, place.path, name, OwnView())) continue;
      const std::optional<RawValue> value = GetValue(place.root, place.path, name, place.view);
      const bool isText = value && (value->type == REG_SZ || value->type == REG_EXPAND_SZ);
      lines.push_back(
          SoakLine(place.location, place.view, place.path, name, isText ? TextOf(value) : std::wstring()));
    }
  }
}

}  // namespace

SoakSignals::SoakSignals(const std::wstring& name)
    : busy_(CreateEventW(nullptr, TRUE, FALSE, (name + L" busy").c_str())),
      over_(CreateEventW(nullptr, TRUE, FALSE, (name + L" over").c_str())),
      resting_(CreateSemaphoreW(nullptr, 0, kSoakWriters, (name + L" resting").c_str())) {}

bool SoakSignals::Quieten() const noexcept {
  ResetEvent(busy_.Get());
  for (int i = 0; i < kSoakWriters; ++i) {
    if (WaitForSingleObject(resting_.Get(), 60'000) != WAIT_OBJECT_0) return false;
  }
  return true;
}

void SoakSignals::Rest() const noexcept {
  ReleaseSemaphore(resting_.Get(), 1, nullptr);
  const HANDLE ends[] = {busy_.Get(), over_.Get()};
  WaitForMultipleObjects(2, ends, FALSE, INFINITE);
}

void MakeSoakPlaces() {
  for (const SoakPlace& place : SoakPlaces()) {
    if (place.kind == Kind::kFiles) continue;
    MakeKey(place.root, place.path, place.view);
    if (place.kind != Kind::kHandlers) continue;
    SetValue(place.root, kSoakClassKey + L"\\InprocServer32", L"", Sz(L"C:\\windows\\notepad.exe"),
             place.view);
  }
}

std::vector<std::wstring> StandingEntries(bool allLocations) {
  std::vector<std::wstring> lines;
  for (const SoakPlace& place : SoakPlaces()) {
    if (allLocations || place.kind != Kind::kHandlers) AddEntries(lines, place);
  }
  std::ranges::sort(lines);
  // Without a second view two writers share a place.
  lines.erase(std::ranges::unique(lines).begin(), lines.end());
  return lines;
}

std::wstring SoakLine(int location, REGSAM view, const std::wstring& key, const std::wstring& value,
                      const std::wstring& command) {
  return std::to_wstring(location) + (view == KEY_WOW64_64KEY ? L" 64 " : L" ") + key + L'|' + value + L'|' +
         command;
}

}  // namespace smh::test
