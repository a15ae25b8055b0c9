#include "sysutil/import_hook.h"

#include <cstdint>
#include <cstring>
#include <map>
#include <stdexcept>

namespace smh::test {

namespace {

using GetProcAddressFunction = FARPROC(WINAPI*)(HMODULE, LPCSTR);

std::map<std::string, void*>& Replacements() {
  static std::map<std::string, void*> replacements;
  return replacements;
}

GetProcAddressFunction g_original = nullptr;

std::string NameText(const char* name) {
  const auto number = reinterpret_cast<std::uintptr_t>(name);
  return number < 0x10000 ? std::to_string(number) : std::string(name);
}

FARPROC WINAPI Answer(HMODULE module, LPCSTR name) {
  const auto found = Replacements().find(NameText(name));
  if (found == Replacements().end()) return g_original(module, name);
  if (found->second == nullptr) SetLastError(ERROR_PROC_NOT_FOUND);
  FARPROC address = nullptr;
  std::memcpy(&address, &found->second, sizeof(address));
  return address;
}

// The place in this program's import table that holds the address of GetProcAddress.
GetProcAddressFunction* ImportedPlace() {
  auto* const base = reinterpret_cast<BYTE*>(GetModuleHandleW(nullptr));
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  const IMAGE_DATA_DIRECTORY& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
  auto* const places = reinterpret_cast<GetProcAddressFunction*>(base + table.VirtualAddress);
  const auto wanted = static_cast<GetProcAddressFunction>(&GetProcAddress);
  for (DWORD i = 0; i < table.Size / sizeof(places[0]); ++i) {
    if (places[i] == wanted) return &places[i];
  }
  throw std::runtime_error("GetProcAddress is not imported");
}

void Redirect() {
  if (g_original != nullptr) return;
  GetProcAddressFunction* const place = ImportedPlace();
  DWORD protection = 0;
  VirtualProtect(place, sizeof(*place), PAGE_READWRITE, &protection);
  g_original = *place;
  *place = &Answer;
  VirtualProtect(place, sizeof(*place), protection, &protection);
}

}  // namespace

ImportHook::ImportHook(const char* name, void* replacement) : name_(NameText(name)) {
  Redirect();
  Replacements()[name_] = replacement;
}

ImportHook::~ImportHook() {
  Replacements().erase(name_);
}

}  // namespace smh::test
