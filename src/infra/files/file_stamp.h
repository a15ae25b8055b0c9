// What tells a file from itself at another time.
#pragma once

#include "core/contracts/shared_text.h"

#include <cstdint>
#include <optional>
#include <string>

namespace smh {

struct FileStamp {
  bool isFolder = false;
  std::uint64_t size = 0;
  std::uint64_t lastWrite = 0;
  auto operator<=>(const FileStamp&) const = default;
};

// One call of the system; none for what does not exist.
std::optional<FileStamp> StampOf(const std::wstring& path) noexcept;
std::optional<FileStamp> StampOf(const SharedText& path) noexcept;

}  // namespace smh
