// The StringData structures: up to five texts, each a count of characters and the characters.
#pragma once

#include "infra/runtime/byte_cursor.h"
#include "shelllink/format/header_info.h"
#include "shelllink/format/stored_text.h"

#include <array>

namespace smh {

enum class LinkString { kName, kRelativePath, kArguments, kWorkingDir, kIconLocation };
inline constexpr std::size_t kLinkStringCount = 5;

// Borrows from the link's bytes, as the texts that it hands out. Loaded and read by one thread at a time.
class TStringData {
 public:
  // Reads the texts that the header announces. Fails the cursor at one that is longer than the file; those
  // before it are kept.
  void Load(ByteCursor& file, const THeaderInfo& header);
  void Clear() noexcept { strings_ = {}; }

  // Cut at the first zero or at the stored count, whichever comes first; empty when the link has none.
  StoredText Text(LinkString which) const noexcept;

 private:
  std::array<Bytes, kLinkStringCount> strings_;
  bool isUnicode_ = false;
};

}  // namespace smh
