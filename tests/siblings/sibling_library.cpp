#include "siblings/sibling_library.h"

#include "support/child_process.h"

#include <algorithm>
#include <stdexcept>

namespace smh::test {

SiblingLibrary::SiblingLibrary(const wchar_t* file)
    : module_(LoadLibraryW((ThisFolder() + file).c_str())),
      getInstance_(ImportFunction<decltype(getInstance_)>(module_.Get(), "GetInstance")) {
  if (getInstance_ == nullptr) throw std::runtime_error("a sibling library cannot be loaded");
}

std::vector<std::string> SiblingLibrary::ExportNames() const {
  const auto* const image = reinterpret_cast<const std::byte*>(Module());
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos->e_lfanew);
  const IMAGE_DATA_DIRECTORY& place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
  const auto* const exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(image + place.VirtualAddress);
  const auto* const names = reinterpret_cast<const DWORD*>(image + exports->AddressOfNames);
  std::vector<std::string> result;
  for (DWORD i = 0; i < exports->NumberOfNames; ++i) {
    result.emplace_back(reinterpret_cast<const char*>(image + names[i]));
  }
  // Functions without a name would be exports too.
  result.resize(std::max<std::size_t>(result.size(), exports->NumberOfFunctions));
  return result;
}

}  // namespace smh::test
