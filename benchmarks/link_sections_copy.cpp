#include "benchmarks/link_sections_copy.h"

#include <cstring>

namespace smh::bench {

std::vector<Bytes> SectionsOf(Bytes link) {
  ByteCursor file(link);
  std::vector<Bytes> sections{file.Take(kLinkHeaderSize)};
  THeaderInfo header;
  ByteCursor again(sections[0]);
  header.Load(again);
  if (header.Has(kHasLinkTargetIDList)) sections.push_back(file.Take(file.U16()));
  if (header.Has(kHasLinkInfo)) sections.push_back(file.Take(file.U32() - 4));
  for (const std::uint32_t flag :
       {kHasName, kHasRelativePath, kHasWorkingDir, kHasArguments, kHasIconLocation}) {
    if (header.Has(flag)) sections.push_back(file.Take(file.U16() * (header.Has(kIsUnicode) ? 2u : 1u)));
  }
  for (std::uint32_t size = file.U32(); size >= 4; size = file.U32()) sections.push_back(file.Take(size - 4));
  return sections;
}

std::vector<std::unique_ptr<std::byte[]>> CopySections(const std::vector<Bytes>& sections) {
  std::vector<std::unique_ptr<std::byte[]>> copies;
  copies.reserve(sections.size());
  for (const Bytes section : sections) {
    copies.push_back(std::make_unique_for_overwrite<std::byte[]>(section.size()));
    std::memcpy(copies.back().get(), section.data(), section.size());
  }
  return copies;
}

}  // namespace smh::bench
