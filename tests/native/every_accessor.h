// Reads everything that a link's sections hand out, byte by byte, so that a sanitizer sees every view.
#pragma once

#include "shelllink/link_sections.h"

#include <optional>

namespace smh::test {

struct ReadLink {
  // None when the link is accepted.
  std::optional<LinkFault> fault;
  // Over all that the accessors hand out, also after a fault.
  std::uint64_t sum;

  bool operator==(const ReadLink&) const = default;
};

std::uint64_t ReadEveryAccessor(const LinkSections& link);
// Loads a copy of `bytes`, then reads every accessor, whatever the outcome.
ReadLink LoadAndRead(LinkSections& link, Bytes bytes);

}  // namespace smh::test
