// The fuzz target: any bytes give a record, every text of it can be asked for, and what lies behind the
// length that the record states is never looked at.

#include "siblings/basekit/format/version_record.h"

namespace {

using namespace smh;

constexpr std::wstring_view kNames[] = {L"CompanyName", L"FileDescription", L"Comments", L"Rest",
                                        L"FileVersion", L"ProductName",     L"",         L"A"};

std::vector<std::wstring> EveryText(Bytes bytes) {
  const VersionRecord record(bytes);
  std::vector<std::wstring> texts = {record.FileVersionNumber()};
  for (const std::wstring_view name : kNames) texts.emplace_back(record.String(name));
  return texts;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Bytes bytes = std::as_bytes(std::span(data, size));
  const std::vector<std::wstring> texts = EveryText(bytes);
  const std::size_t length = ByteCursor(bytes).U16();
  if (length < size && EveryText(bytes.first(length)) != texts) __builtin_trap();
  return 0;
}
