#include "shelllink/format/section_view.h"

namespace smh {

SectionView SectionView::From(std::uint64_t offset) const noexcept {
  if (offset > bytes_.size()) return {};
  return SectionView(bytes_.subspan(static_cast<std::size_t>(offset)));
}

}  // namespace smh
