// What can be wrong with the bytes of a link.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>

namespace smh {

// A class identifier as it lies in the file.
using ClassIdBytes = std::array<std::byte, 16>;

enum class LinkFault {
  // The file or one of its sections is too short, too long, or has a size that cannot be.
  kSizeOrData,
  // The header names another size than its own; see HeaderSize.
  kHeaderSize,
  // Not a shell link; see ClassId.
  kClassId,
  // The LinkInfo structure contradicts itself.
  kLinkInfo,
};

// Raised by the sections and by LinkSections only; never leaves TShellLinkInfo. A value: any thread.
class LinkFormatError : public std::exception {
 public:
  explicit LinkFormatError(LinkFault fault) noexcept : fault_(fault) {}
  static LinkFormatError OfHeaderSize(std::uint32_t found) noexcept {
    LinkFormatError error(LinkFault::kHeaderSize);
    error.headerSize_ = found;
    return error;
  }
  static LinkFormatError OfClassId(const ClassIdBytes& found) noexcept {
    LinkFormatError error(LinkFault::kClassId);
    error.classId_ = found;
    return error;
  }

  LinkFault Fault() const noexcept { return fault_; }
  // The size and the identifier found; of use only for the fault that speaks of them.
  std::uint32_t HeaderSize() const noexcept { return headerSize_; }
  const ClassIdBytes& ClassId() const noexcept { return classId_; }
  const char* what() const noexcept override { return "smh::LinkFormatError"; }

 private:
  LinkFault fault_;
  std::uint32_t headerSize_ = 0;
  ClassIdBytes classId_{};
};

}  // namespace smh
