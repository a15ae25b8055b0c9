#include "shelllink/format/link_target_id_list.h"

#include <cstring>

namespace smh {

void TLinkTargetIDList::Load(ByteCursor& file) {
  const Bytes list = file.Take(file.U16());
  if (list.empty()) return;
  list_ = AllocateTaskMemory(list.size());
  size_ = list.size();
  std::memcpy(list_.get(), list.data(), list.size());
}

void TLinkTargetIDList::Clear() noexcept {
  list_.reset();
  size_ = 0;
}

bool TLinkTargetIDList::IsWellFormed() const noexcept {
  // An item's size counts itself; one without a byte of content says nothing that a folder could read.
  constexpr std::size_t kSizeField = 2;
  ByteCursor list(List());
  std::uint16_t size = list.U16();
  while (size > kSizeField) {
    list.Skip(size - kSizeField);
    size = list.U16();
  }
  return list.Ok() && size == 0;
}

}  // namespace smh
