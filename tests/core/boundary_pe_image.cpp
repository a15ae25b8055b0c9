#include "core/boundary_pe_image.h"

#include <utility>

namespace smh::test {

PeImage::PeImage(std::string bytes) : bytes_(std::move(bytes)) {
  const auto dos = At<IMAGE_DOS_HEADER>(0);
  if (dos.e_magic != IMAGE_DOS_SIGNATURE || dos.e_lfanew < 0) Malformed();
  const auto start = static_cast<std::size_t>(dos.e_lfanew);
  headers_ = At<IMAGE_NT_HEADERS32>(start);
  if (headers_.Signature != IMAGE_NT_SIGNATURE ||
      headers_.OptionalHeader.Magic != IMAGE_NT_OPTIONAL_HDR32_MAGIC) {
    Malformed();
  }
  std::size_t at =
      start + offsetof(IMAGE_NT_HEADERS32, OptionalHeader) + headers_.FileHeader.SizeOfOptionalHeader;
  for (WORD i = 0; i < headers_.FileHeader.NumberOfSections; ++i, at += sizeof(IMAGE_SECTION_HEADER)) {
    sections_.push_back(At<IMAGE_SECTION_HEADER>(at));
  }
}

const IMAGE_DATA_DIRECTORY& PeImage::Directory(int index) const {
  return headers_.OptionalHeader.DataDirectory[index];
}

std::size_t PeImage::Offset(DWORD address) const {
  for (const IMAGE_SECTION_HEADER& section : sections_) {
    if (address >= section.VirtualAddress && address - section.VirtualAddress < section.SizeOfRawData) {
      return std::size_t{address - section.VirtualAddress} + section.PointerToRawData;
    }
  }
  Malformed();
}

std::string PeImage::Text(DWORD address) const {
  const std::size_t begin = Offset(address);
  const std::size_t end = begin < bytes_.size() ? bytes_.find('\0', begin) : std::string::npos;
  if (end == std::string::npos) Malformed();
  return bytes_.substr(begin, end - begin);
}

std::vector<std::string> PeImage::Exports() const {
  std::vector<std::string> result;
  if (Directory(IMAGE_DIRECTORY_ENTRY_EXPORT).Size == 0) return result;
  const auto table =
      At<IMAGE_EXPORT_DIRECTORY>(Offset(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT).VirtualAddress));
  for (DWORD i = 0; i < table.NumberOfFunctions; ++i) {
    if (At<DWORD>(Offset(table.AddressOfFunctions + 4 * i)) != 0)
      result.push_back(std::string(1, '#').append(std::to_string(i)));
  }
  for (DWORD i = 0; i < table.NumberOfNames; ++i) {
    const WORD function = At<WORD>(Offset(table.AddressOfNameOrdinals + 2 * i));
    const std::string name = Text(At<DWORD>(Offset(table.AddressOfNames + 4 * i)));
    if (function < result.size() && result[function].starts_with('#')) {
      result[function] = name;
    } else {
      result.push_back(name);
    }
  }
  return result;
}

std::vector<std::string> PeImage::ImportedModules() const {
  std::vector<std::string> result;
  if (Directory(IMAGE_DIRECTORY_ENTRY_IMPORT).Size == 0) return result;
  std::size_t at = Offset(Directory(IMAGE_DIRECTORY_ENTRY_IMPORT).VirtualAddress);
  for (;; at += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
    const auto descriptor = At<IMAGE_IMPORT_DESCRIPTOR>(at);
    if (descriptor.Name == 0) return result;
    result.push_back(Text(descriptor.Name));
  }
}

}  // namespace smh::test
