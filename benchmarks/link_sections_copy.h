// What parsing a link in memory is measured against: its sections, each copied into a buffer of its own.
#pragma once

#include "shelllink/format/link_sections.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace smh::bench {

// The sections of a well-formed link, in their order; views into it.
std::vector<Bytes> SectionsOf(Bytes link);

std::vector<std::unique_ptr<std::byte[]>> CopySections(const std::vector<Bytes>& sections);

}  // namespace smh::bench
