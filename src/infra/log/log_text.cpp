#include "infra/log/log_text.h"

#include <algorithm>

namespace smh {

void LogText::AddLine(std::wstring_view line) {
  Put(line);
  Put(L"\r\n");
}

void LogText::Put(std::wstring_view text) {
  while (!text.empty()) {
    if (Room() == 0) blocks_.push_back(std::make_unique_for_overwrite<BlockOfUnits>());
    BlockOfUnits& block = *blocks_.back();
    const std::size_t count = std::min(Room(), text.size());
    std::copy_n(text.data(), count, block.units + block.used);
    block.used += count;
    text.remove_prefix(count);
  }
}

}  // namespace smh
