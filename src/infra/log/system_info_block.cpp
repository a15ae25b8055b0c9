#include "infra/log/system_info_block.h"

#include "core/contracts/boundary_string.h"
#include "core/contracts/uDllGlobals.h"
#include "infra/log/uStatisticsLog.h"
#include "infra/registry/registry_tree.h"
#include "infra/registry/registry_values.h"
#include "infra/registry/uRegistryUtils.h"
#include "infra/runtime/module_path.h"
#include "infra/runtime/scoped_com.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace smh {

namespace {

// Four bytes; missing ones count as zero and further ones not at all.
std::uint32_t IntegerOf(std::span<const std::byte> data) noexcept {
  std::uint32_t number = 0;
  std::memcpy(&number, data.data(), std::min(data.size(), sizeof(number)));
  return number;
}

void LogValue(const RegistryValueReader& value) {
  std::wstring type;
  std::wstring data;
  if (value.IsText()) {
    // Kept on purpose: expand-strings carry the same label.
    type = L"REG_SZ";
    data = value.Text();
  } else if (value.Type() == REG_DWORD) {
    type = L"REG_DWORD";
    data = std::to_wstring(IntegerOf(value.Data()));
  } else if (value.Type() == REG_MULTI_SZ) {
    type = L"REG_MULTISZ";
    data = JoinTextList(value.Data(), L", ");
  }
  LogFormat(L"%s (%s) = \"%s\"", value.Name(), type, data);
}

void LogKey(REGSAM view, HKEY root, bool recurse, const std::wstring& key, int depth) {
  TRegistryEx registry(KEY_READ | view);
  registry.SetRootKey(root);
  if (!registry.OpenKey(key, false)) return;
  LogFormat(L"%s", registry.FullValuePath({}));
  RegistryValueReader values(registry.CurrentKey());
  while (values.Next()) LogValue(values);
  LogLine({});
  if (!recurse || depth == kDeepestKey) return;
  const std::vector<std::wstring> names = registry.KeyNames();
  registry.CloseKey();
  for (const std::wstring& name : names) {
    const std::wstring below = std::wstring(key).append(L"\\").append(name);
    // What a link leads to lies elsewhere, and may lead back here.
    if (!IsRegistryLink(root, below, view)) LogKey(view, root, recurse, below, depth + 1);
  }
}

constexpr const wchar_t* kSystemLibraries[] = {L"shlwapi.dll", L"shell32.dll", L"comctl32.dll"};

struct DumpedKey {
  HKEY root;
  const wchar_t* key;
};

const DumpedKey kDumpedKeys[] = {
    {HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows\\CurrentVersion\\Run"},
    {HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Run"},
    {HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce"},
    {HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce"},
};

// In digits of a fixed form, whatever the locale.
std::wstring LocalTimeText() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  wchar_t text[32];
  std::swprintf(text, std::size(text), L"%04u.%02u.%02u %02u:%02u:%02u.%03u", now.wYear, now.wMonth, now.wDay,
                now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
  return text;
}

std::wstring_view TrueOrFalse(bool value) noexcept {
  return value ? L"True" : L"False";
}

void LogOperatingSystem() {
  LogFormat(L"Version:        %s", WinVersionInfo::OSName());
  LogFormat(L"Architecture:   %s", WinVersionInfo::ArchitectureName());
  LogFormat(L"Service Pack:   %s", WinVersionInfo::ServicePackName());
  LogFormat(L"Edition:        %s", WinVersionInfo::EditionName());
  for (const wchar_t* const library : kSystemLibraries) {
    DWORD major = 0;
    DWORD minor = 0;
    if (!WinVersionInfo::DllVersion(library, major, minor)) major = minor = 0;
    LogFormat(L"%s: %d.%d", library, major, minor);
  }
  LogFormat(L"IsWow64Process: %s", TrueOrFalse(WinVersionInfo::IsWow64()));
}

void LogUserAndProgram() {
  IHelper& helper = DLLGlobals::Helper();
  IGlobals& globals = DLLGlobals::Globals();
  const std::wstring module = ModuleFileName(ThisModule());
  LogFormat(L"User name       : %s",
            TakeText([&](BoundaryText* text) { return helper.GetCurrentUserText(text); }));
  LogFormat(L"User is admin   : %s", TrueOrFalse(helper.IsUserAdmin() != 0));
  LogFormat(L"Product version : %s",
            TakeText([&](BoundaryText* text) { return globals.GetProductVersion(text); }));
  LogFormat(L"Program version : %s", TakeText([&](BoundaryText* text) {
              return helper.GetVersionString(module.c_str(), L"FileVersion", text);
            }));
}

// A key that cannot be read to its end leaves an error record and the other keys readable.
void LogRunKeys() {
  for (const DumpedKey& row : kDumpedKeys) {
    for (const REGSAM view : {0, KEY_WOW64_64KEY}) {
      if (view != 0 && !WinVersionInfo::IsWow64()) continue;
      try {
        LogRegistryKey(view, row.root, true, row.key);
      } catch (const Exception&) {
        LogCurrentException();
      }
    }
  }
}

}  // namespace

void LogRegistryKey(REGSAM view, HKEY root, bool recurse, const std::wstring& key) {
  const LogScope scope;
  LogKey(view, root, recurse, key, 1);
}

void LogSystemInfo() {
  const LogScope scope;
  const ScopedCom com(COINIT_MULTITHREADED);
  ClearLogLines();
  FixLogFileNames();
  LogSeparator();
  LogFormat(L"System info at %s.", LocalTimeText());
  LogSeparator();
  LogOperatingSystem();
  LogSeparator();
  LogUserAndProgram();
  LogSeparator();
  LogRunKeys();
  LogSeparator();
}

}  // namespace smh
