#include "sysutil/import_hook.h"

#include "support/import_patch.h"

#include <cstdint>
#include <cstring>
#include <map>

namespace smh::test {

namespace {

decltype(&GetProcAddress) g_original = nullptr;

std::map<std::string, void*>& Replacements() {
  static std::map<std::string, void*> replacements;
  return replacements;
}

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

void Redirect() {
  if (g_original != nullptr) return;
  g_original = &GetProcAddress;
  static const ImportPatch patch("GetProcAddress", &Answer);
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
