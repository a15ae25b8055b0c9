// Reads everything that a link's sections hand out, byte by byte, so that a sanitizer sees every view.
#pragma once

#include "shelllink/format/link_sections.h"

#include <optional>
#include <vector>

namespace smh::test {

struct ReadLink {
  // None when the link is accepted.
  std::optional<LinkFault> fault;
  // Over all that the accessors hand out, also after a fault.
  std::uint64_t sum;

  bool operator==(const ReadLink&) const = default;
};

inline std::uint64_t Sum(Bytes bytes) {
  std::uint64_t sum = bytes.size();
  for (const std::byte byte : bytes) sum += static_cast<std::uint64_t>(byte);
  return sum;
}

inline std::uint64_t Sum(const StoredText& text) {
  if (!text.IsUtf16()) return Sum(std::as_bytes(std::span(text.AnsiView())));
  std::vector<char16_t> units(text.Utf16Length());
  text.CopyUtf16(units.data());
  return Sum(std::as_bytes(std::span(units)));
}

inline std::uint64_t Sum(const THeaderInfo& header) {
  return header.LinkFlags() + static_cast<std::uint32_t>(header.IconIndex()) + header.ShowCommand() +
         header.HotKey();
}

inline std::uint64_t ReadEveryAccessor(const LinkSections& link) {
  std::uint64_t sum = Sum(link.Header()) + Sum(link.TargetIDList().List());
  sum += link.TargetIDList().IsWellFormed() ? 1 : 0;
  sum += link.MayUseLinkInfo() ? 1 : 0;
  sum += Sum(link.LinkInfo().LocalBasePath()) + Sum(link.LinkInfo().CommonPathSuffix());
  sum += Sum(link.LinkInfo().NetName());
  for (std::size_t i = 0; i < kLinkStringCount; ++i) {
    sum += Sum(link.Strings().Text(static_cast<LinkString>(i)));
  }
  for (const TExtraData& block : link.ExtraData()) {
    sum += block.BlockSize() + block.Signature() + Sum(block.Data()) + Sum(block.Target());
  }
  for (int kind = 0; kind <= 11; ++kind) {
    sum += link.FindExtraData(static_cast<TExtraDataKind>(kind)) != nullptr ? 1 : 0;
  }
  return sum + Sum(link.EnvironmentTarget()) + Sum(link.IconLocation());
}

// Loads a copy of `bytes`, then reads every accessor, whatever the outcome.
inline ReadLink LoadAndRead(LinkSections& link, Bytes bytes) {
  std::optional<LinkFault> fault;
  try {
    link.Load(bytes);
  } catch (const LinkFormatError& error) {
    fault = error.Fault();
  }
  return {fault, ReadEveryAccessor(link)};
}

}  // namespace smh::test
