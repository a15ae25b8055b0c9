// The fuzz target: any bytes give a journal or none, and a journal that was read is written and read as the
// same. The checksum would keep the fuzzer out, so most inputs are payloads that get the right one: a byte
// says how long each is.

#include "tests/native/sample_journal.h"

namespace {

using namespace smh;

ByteVector FileOfPayloads(std::span<const std::byte> bytes) {
  std::vector<ByteVector> parts = {EncodeBeginning({}), EncodePart({})};
  while (bytes.size() > 1) {
    const std::size_t size = std::min(bytes.size() - 1, std::to_integer<std::size_t>(bytes[0]) + 1);
    const auto payload = bytes.subspan(1, size);
    parts.push_back(FrameRecord(payload));
    bytes = bytes.subspan(1 + size);
  }
  return test::Joined(parts);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto bytes = std::as_bytes(std::span(data, size));
  const bool isRaw = size > 0 && data[0] == 'S';
  auto contents = isRaw ? DecodeJournal(bytes) : DecodeJournal(FileOfPayloads(bytes));
  if (!contents) return 0;
  auto again = DecodeJournal(test::Encode(*contents));
  if (!again || !again->whole) __builtin_trap();
  // What is damaged is not written again, and an old version as the new one.
  again->size = contents->size;
  again->whole = contents->whole;
  again->version = contents->version;
  if (again != contents) __builtin_trap();
  return 0;
}
