// The fuzz target: any bytes either load or raise the parser's own error, and every accessor stays inside
// them.

#include "tests/native/every_accessor.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const smh::Bytes bytes = std::as_bytes(std::span(data, size));
  smh::LinkSections fresh;
  const smh::test::ReadLink expected = smh::test::LoadAndRead(fresh, bytes);
  // A load over the sections of another link leaves nothing of that one, whatever became of it.
  smh::LinkSections reused;
  smh::test::LoadAndRead(reused, bytes.first(size / 2));
  if (smh::test::LoadAndRead(reused, bytes) != expected) __builtin_trap();
  return 0;
}
