#include "shelllink/format/link_splice.h"

#include <algorithm>

namespace smh {

namespace {

// What stands in the link because of its target, apart from the texts, and comes from the new one or goes.
constexpr std::uint32_t kFlagsOfCommand = kHasLinkTargetIDList | kHasLinkInfo | kHasArguments;
constexpr std::uint32_t kFlagsOfTarget =
    kFlagsOfCommand | kHasRelativePath | kHasExpString | kHasDarwinId | kPreferEnvironmentPath;

// In the order of the file; the relative path is that to the old target.
struct StringRow {
  std::uint32_t flag;
  LinkString which;
};
constexpr StringRow kStrings[] = {
    {kHasName, LinkString::kName},
    {kHasWorkingDir, LinkString::kWorkingDir},
    {kHasArguments, LinkString::kArguments},
    {kHasIconLocation, LinkString::kIconLocation},
};

void Put(std::string& link, Bytes bytes) {
  link.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

void PutInteger(std::string& link, std::uint32_t value, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) link += static_cast<char>(value >> (8 * i) & 0xFF);
}

void PutHeader(std::string& link, const THeaderInfo& kept, const THeaderInfo& command, std::uint32_t taken) {
  constexpr std::size_t kBeforeFlags = 20;
  // Attributes, three times and size of the target.
  constexpr std::size_t kTargetFacts = 32;
  ByteCursor keptFields(kept.Stored());
  ByteCursor commandFields(command.Stored());
  Put(link, keptFields.Take(kBeforeFlags));
  const std::uint32_t keptFlags = keptFields.U32() & ~kFlagsOfTarget;
  commandFields.Skip(kBeforeFlags);
  PutInteger(link, keptFlags | (commandFields.U32() & taken) | kIsUnicode, 4);
  keptFields.Skip(kTargetFacts);
  Put(link, commandFields.Take(kTargetFacts));
  Put(link, keptFields.Take(keptFields.Remaining()));
}

void PutString(std::string& link, const TStringData& strings, LinkString which, const WidenText& widen) {
  const Bytes stored = strings.Stored(which);
  if (strings.IsUnicode()) {
    PutInteger(link, static_cast<std::uint32_t>(stored.size() / sizeof(char16_t)), 2);
    Put(link, stored);
    return;
  }
  const std::u16string wide = widen({reinterpret_cast<const char*>(stored.data()), stored.size()});
  PutInteger(link, static_cast<std::uint32_t>(wide.size()), 2);
  Put(link, std::as_bytes(std::span(wide)));
}

bool SpeaksOfTarget(TExtraDataKind kind) noexcept {
  using enum TExtraDataKind;
  return kind == edkEnvironment || kind == edkSpecialFolder || kind == edkKnownFolder ||
         kind == edkVistaIDList || kind == edkTracker || kind == edkDarwin;
}

char16_t Folded(char16_t unit) noexcept {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20) : unit;
}

// Texts of a property store stand at any offset.
bool HoldsText(Bytes bytes, std::u16string_view text) noexcept {
  const auto startsHere = [text](ByteCursor units) {
    return std::ranges::all_of(
        text, [&](char16_t unit) { return Folded(units.U16()) == Folded(unit) && units.Ok(); });
  };
  if (text.empty()) return false;
  for (ByteCursor rest(bytes); rest.Remaining() >= text.size() * sizeof(char16_t); rest.Skip(1)) {
    if (startsHere(rest)) return true;
  }
  return false;
}

std::string TextOf(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// The storages of a property store that do not name the file, with what ends them; empty when none is left. A
// store that is not made of storages counts as one.
std::string KeptStorages(Bytes store, std::u16string_view file) {
  constexpr std::uint32_t kSizeField = 4;
  std::string kept;
  ByteCursor storages(store);
  for (;;) {
    // Its size counts itself; that of the last is 0, and nothing behind it is a storage.
    const std::uint32_t size = ByteCursor(storages).U32();
    if (size == 0 && storages.Remaining() >= kSizeField) {
      return kept.empty() ? kept : kept + TextOf(storages.Take(storages.Remaining()));
    }
    const Bytes storage = storages.Take(std::max(size, kSizeField));
    if (!storages.Ok()) return HoldsText(store, file) ? std::string() : TextOf(store);
    if (!HoldsText(storage, file)) Put(kept, storage);
  }
}

void PutBlock(std::string& link, const TExtraData& block, Bytes data) {
  constexpr std::uint32_t kHeadSize = 8;
  PutInteger(link, static_cast<std::uint32_t>(data.size()) + kHeadSize, 4);
  PutInteger(link, block.Signature(), 4);
  Put(link, data);
}

void PutBlocks(std::string& link, const std::vector<TExtraData>& blocks, std::u16string_view file) {
  for (const TExtraData& block : blocks) {
    if (SpeaksOfTarget(block.Kind())) continue;
    if (block.Kind() != TExtraDataKind::edkPropertyStore) {
      PutBlock(link, block, block.Data());
      continue;
    }
    const std::string storages = KeptStorages(block.Data(), file);
    if (!storages.empty()) PutBlock(link, block, std::as_bytes(std::span(storages)));
  }
  // The terminal block.
  PutInteger(link, 0, 4);
}

}  // namespace

std::string SpliceLink(const LinkSections& kept, const LinkSections& command, std::u16string_view file,
                       const WidenText& widen, bool takesLinkInfo) {
  std::string link;
  const std::uint32_t taken = takesLinkInfo ? kFlagsOfCommand : kFlagsOfCommand & ~kHasLinkInfo;
  PutHeader(link, kept.Header(), command.Header(), taken);
  if (command.Header().Has(kHasLinkTargetIDList)) {
    const Bytes list = command.TargetIDList().List();
    PutInteger(link, static_cast<std::uint32_t>(list.size()), 2);
    Put(link, list);
  }
  if (command.Header().Has(kHasLinkInfo & taken)) Put(link, command.LinkInfo().Stored());
  for (const StringRow& row : kStrings) {
    const LinkSections& source = row.which == LinkString::kArguments ? command : kept;
    if (source.Header().Has(row.flag)) PutString(link, source.Strings(), row.which, widen);
  }
  PutBlocks(link, kept.ExtraData(), file);
  return link;
}

}  // namespace smh
