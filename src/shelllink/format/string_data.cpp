#include "shelllink/format/string_data.h"

namespace smh {

namespace {

struct StringRow {
  std::uint32_t flag;
  LinkString which;
};

// In the order of the file.
constexpr StringRow kStrings[] = {
    {kHasName, LinkString::kName},
    {kHasRelativePath, LinkString::kRelativePath},
    {kHasWorkingDir, LinkString::kWorkingDir},
    {kHasArguments, LinkString::kArguments},
    {kHasIconLocation, LinkString::kIconLocation},
};

}  // namespace

void TStringData::Load(ByteCursor& file, const THeaderInfo& header) {
  isUnicode_ = header.Has(kIsUnicode);
  for (const StringRow& row : kStrings) {
    if (!header.Has(row.flag)) continue;
    const std::uint64_t count = file.U16();
    strings_[static_cast<std::size_t>(row.which)] = file.Take(isUnicode_ ? count * sizeof(char16_t) : count);
  }
}

StoredText TStringData::Text(LinkString which) const noexcept {
  const Bytes bytes = strings_[static_cast<std::size_t>(which)];
  return isUnicode_ ? StoredText::Utf16(bytes) : StoredText::Ansi(bytes);
}

}  // namespace smh
