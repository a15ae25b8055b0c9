// What a 32-bit Windows module file exports and imports. Every read is checked against the file's end.
#pragma once

#include <windows.h>

#include <cstring>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace smh::test {

class PeImage {
 public:
  // The bytes of the file. Throws std::runtime_error, as every operation does on a malformed file.
  explicit PeImage(std::string bytes);

  // "#N" for a function without a name.
  std::vector<std::string> Exports() const;
  std::vector<std::string> ImportedModules() const;
  // Modules that are loaded at the first call of one of their functions.
  bool HasDelayedImports() const { return Directory(IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT).Size != 0; }

 private:
  template <typename Record>
  Record At(std::size_t offset) const {
    if (offset > bytes_.size() || bytes_.size() - offset < sizeof(Record)) Malformed();
    Record record;
    std::memcpy(&record, bytes_.data() + offset, sizeof(record));
    return record;
  }
  [[noreturn]] static void Malformed() { throw std::runtime_error("not a module file"); }
  const IMAGE_DATA_DIRECTORY& Directory(int index) const;
  // From an address in the loaded image to one in the file.
  std::size_t Offset(DWORD address) const;
  std::string Text(DWORD address) const;

  std::string bytes_;
  IMAGE_NT_HEADERS32 headers_ = {};
  std::vector<IMAGE_SECTION_HEADER> sections_;
};

}  // namespace smh::test
