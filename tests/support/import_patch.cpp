#include "tests/support/import_patch.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace smh::test {

namespace {

template <typename Type>
Type* At(HMODULE module, DWORD offset) noexcept {
  return reinterpret_cast<Type*>(reinterpret_cast<BYTE*>(module) + offset);
}

// The slot of the module's import table that holds the function's address.
ULONG_PTR* FindSlot(HMODULE module, std::string_view name) noexcept {
  const auto* const header = At<IMAGE_NT_HEADERS>(module, At<IMAGE_DOS_HEADER>(module, 0)->e_lfanew);
  const DWORD table = header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(module, table); library->Name != 0; ++library) {
    const auto* names = At<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
    auto* slots = At<IMAGE_THUNK_DATA>(module, library->FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++slots) {
      if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
      if (name == At<IMAGE_IMPORT_BY_NAME>(module, names->u1.AddressOfData)->Name) {
        return reinterpret_cast<ULONG_PTR*>(&slots->u1.Function);
      }
    }
  }
  return nullptr;
}

HMODULE ModuleOrProgram(HMODULE module) noexcept {
  return module == nullptr ? GetModuleHandleW(nullptr) : module;
}

void WriteSlot(ULONG_PTR* slot, ULONG_PTR address) noexcept {
  DWORD protection = 0;
  VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &protection);
  *static_cast<volatile ULONG_PTR*>(slot) = address;
  VirtualProtect(slot, sizeof(*slot), protection, &protection);
}

}  // namespace

std::unique_ptr<ImportPatch> ImportPatch::IfImported(HMODULE module, const char* name, void* replacement) {
  if (FindSlot(ModuleOrProgram(module), name) == nullptr) return nullptr;
  return std::unique_ptr<ImportPatch>(
      new ImportPatch(module, name, reinterpret_cast<ULONG_PTR>(replacement)));
}

ImportPatch::ImportPatch(HMODULE module, const char* name, ULONG_PTR replacement)
    : slot_(FindSlot(ModuleOrProgram(module), name)) {
  if (slot_ == nullptr) throw std::runtime_error(std::string("not imported: ").append(name));
  original_ = *slot_;
  WriteSlot(slot_, replacement);
}

ImportPatch::~ImportPatch() {
  WriteSlot(slot_, original_);
}

}  // namespace smh::test
