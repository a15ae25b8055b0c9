// Parsing shell links from memory: against copying their sections, and against liblnk on the same bytes.

#include "benchmarks/bench.h"
#include "benchmarks/link_sections_copy.h"
#include "samples/link_builder.h"

#include <libbfio.h>
#include <liblnk.h>

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
    const Pair copying = AlternateRuns(15, 20'000, ours, [&] { CopySections(sections); });
    AddRow("native: link of " + size + " bytes, copying its sections", "us", copying.ours, copying.reference,
           3);
    const Pair other = AlternateRuns(15, 2'000, ours, [&] { ReadWithLiblnk(link.Text()); });
    AddRow("native: link of " + size + " bytes, liblnk", "us", other.ours, other.reference, 0.2);
  }
}

}  // namespace
}  // namespace smh::bench
