#include "shelllink/format/extra_data.h"

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

using enum TExtraDataKind;

constexpr std::uint32_t kAnySize = 0;
// Head, 260 ANSI characters, 260 UTF-16 units.
constexpr std::uint32_t kStringPropsSize = 788;
constexpr std::uint64_t kTargetCharacters = 260;

struct BlockRow {
  std::uint32_t signature;
  TExtraDataKind kind;
  std::uint32_t requiredSize;
};

constexpr BlockRow kBlocks[] = {
    {0xA0000001, edkEnvironment, kStringPropsSize},
    {0xA0000002, edkConsole, 204},
    {0xA0000003, edkTracker, 96},
    {0xA0000004, edkConsoleFE, 12},
    {0xA0000005, edkSpecialFolder, 16},
    {0xA0000006, edkDarwin, kStringPropsSize},
    {0xA0000007, edkIconEnvironment, kStringPropsSize},
    {0xA0000008, edkShim, kAnySize},
    {0xA0000009, edkPropertyStore, kAnySize},
    {0xA000000B, edkKnownFolder, 28},
    {0xA000000C, edkVistaIDList, kAnySize},
};

BlockRow RowOf(std::uint32_t signature) noexcept {
  const auto row = std::ranges::find(kBlocks, signature, &BlockRow::signature);
  return row == std::end(kBlocks) ? BlockRow{signature, edkUnknown, kAnySize} : *row;
}

bool HasStringProps(TExtraDataKind kind) noexcept {
  return kind == edkEnvironment || kind == edkIconEnvironment || kind == edkDarwin;
}

}  // namespace

TExtraData TExtraData::Load(ByteCursor& file, std::uint32_t blockSize) {
  const BlockRow row = RowOf(file.U32());
  const bool isExpected = row.requiredSize == kAnySize || row.requiredSize == blockSize;
  if (!isExpected || blockSize < kHeadSize) file.Fail();
  return TExtraData(row.kind, row.signature, file.Take(blockSize - kHeadSize));
}

StoredText TExtraData::Target() const noexcept {
  if (!HasStringProps(kind_)) return {};
  const TExtraDataStringProps strings(data_);
  const StoredText unicode = strings.UnicodeTarget();
  return unicode.Empty() ? strings.AnsiTarget() : unicode;
}

StoredText TExtraDataStringProps::AnsiTarget() const noexcept {
  return StoredText::Ansi(ByteCursor(data_).Take(kTargetCharacters));
}

StoredText TExtraDataStringProps::UnicodeTarget() const noexcept {
  ByteCursor strings(data_);
  strings.Skip(kTargetCharacters);
  return StoredText::Utf16(strings.Take(kTargetCharacters * sizeof(char16_t)));
}

}  // namespace smh
