// The fuzz target: any bytes either load or raise the parser's own error, and every accessor stays inside
// them.

#include "shelllink/format/item_strings.h"
#include "shelllink/format/link_splice.h"
#include "tests/native/every_accessor.h"

namespace {

// A link that is accepted can be given a command, its own here, and is one afterwards.
void SpliceWithItself(const smh::LinkSections& link) {
  const std::string bytes = smh::SpliceLink(
      link, link, u"a.exe", [](std::string_view text) { return std::u16string(text.size(), u'w'); });
  smh::LinkSections spliced;
  if (smh::test::LoadAndRead(spliced, std::as_bytes(std::span(bytes))).fault) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const smh::Bytes bytes = std::as_bytes(std::span(data, size));
  smh::LinkSections fresh;
  const smh::test::ReadLink expected = smh::test::LoadAndRead(fresh, bytes);
  // A load over the sections of another link leaves nothing of that one, whatever became of it.
  smh::LinkSections reused;
  smh::test::LoadAndRead(reused, bytes.first(size / 2));
  if (smh::test::LoadAndRead(reused, bytes) != expected) __builtin_trap();
  if (!expected.fault) SpliceWithItself(fresh);
  smh::DoItemsHoldTheirStrings(fresh.TargetIDList().List());
  return 0;
}
