// Parsing shell links from memory: against copying their sections, and against liblnk on the same bytes.

#include "bench.h"

#include "link_builder.h"
#include "shelllink/link_sections.h"

#include <libbfio.h>
#include <liblnk.h>

#include <cstring>
#include <memory>
#include <stdexcept>

namespace smh::bench {
namespace {

// From half a kilobyte to four, by the length of the texts; with a target, texts and a block.
std::vector<BuiltLink> Corpus() {
  std::vector<BuiltLink> links;
  for (const std::size_t units : {40u, 150u, 500u}) {
    LinkBuilder link;
    link.info = LinkInfoSpec{.basePath = "C:\\Program Files\\" + std::string(units, 'p') + ".exe"};
    link.strings = {{LinkString::kName, std::u16string(units, u'n')},
                    {LinkString::kArguments, std::u16string(units, u'a')},
                    {LinkString::kWorkingDir, std::u16string(units, u'w')}};
    link.blocks = {{0xA0000005, std::string(8, '\1')}};
    links.push_back(link.Build());
  }
  return links;
}

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

void Copy(const std::vector<Bytes>& sections) {
  std::vector<std::unique_ptr<std::byte[]>> copies;
  copies.reserve(sections.size());
  for (const Bytes section : sections) {
    copies.push_back(std::make_unique_for_overwrite<std::byte[]>(section.size()));
    std::memcpy(copies.back().get(), section.data(), section.size());
  }
}

// What a program does to read one link with liblnk.
void ReadWithLiblnk(const std::string& bytes) {
  libbfio_handle_t* memory = nullptr;
  liblnk_file_t* file = nullptr;
  auto* const data = reinterpret_cast<std::uint8_t*>(const_cast<char*>(bytes.data()));
  if (libbfio_memory_range_initialize(&memory, nullptr) != 1 ||
      libbfio_memory_range_set(memory, data, bytes.size(), nullptr) != 1 ||
      liblnk_file_initialize(&file, nullptr) != 1 ||
      liblnk_file_open_file_io_handle(file, memory, LIBLNK_OPEN_READ, nullptr) != 1) {
    throw std::runtime_error("liblnk cannot read a link");
  }
  liblnk_file_close(file, nullptr);
  liblnk_file_free(&file, nullptr);
  libbfio_handle_free(&memory, nullptr);
}

TEST_CASE("Parsing links") {
  for (const BuiltLink& link : Corpus()) {
    const std::string size = std::to_string(link.Size());
    const std::vector<Bytes> sections = SectionsOf(link.AsBytes());
    const auto ours = [&] {
      LinkSections parsed;
      parsed.Load(link.AsBytes());
    };
    const Pair copying = AlternateRuns(15, 20'000, ours, [&] { Copy(sections); });
    AddRow("native: link of " + size + " bytes, copying its sections", "us", copying.ours, copying.reference,
           3);
    const Pair other = AlternateRuns(15, 2'000, ours, [&] { ReadWithLiblnk(link.Text()); });
    AddRow("native: link of " + size + " bytes, liblnk", "us", other.ours, other.reference, 0.2);
  }
}

}  // namespace
}  // namespace smh::bench
