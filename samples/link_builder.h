// Writes shell links byte by byte, right ones and, by changing fields afterwards, wrong ones. Portable.
#pragma once

#include "shelllink/format/link_sections.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace smh {

// An integer of the format inside a built link.
struct LinkField {
  std::string name;
  std::size_t offset;
  std::size_t width;
};

class BuiltLink {
 public:
  const std::string& Text() const noexcept { return bytes_; }
  Bytes AsBytes() const noexcept { return std::as_bytes(std::span(bytes_)); }
  const std::vector<LinkField>& Fields() const noexcept { return fields_; }

  // Copies with one field changed; an unknown name throws std::out_of_range.
  BuiltLink With(std::string_view field, std::uint64_t value) const;
  std::uint64_t ValueOf(std::string_view field) const;
  // The first `size` bytes; bytes added at the end.
  BuiltLink CutTo(std::size_t size) const;
  BuiltLink Followed(std::string_view tail) const;

  void Put(std::string_view bytes) { bytes_ += bytes; }
  void PutUnits(std::u16string_view units);
  // Appends an integer of `width` bytes and remembers it under its name.
  void PutField(std::string name, std::uint64_t value, std::size_t width);
  std::size_t Size() const noexcept { return bytes_.size(); }
  void Set(std::string_view field, std::uint64_t value);

 private:
  const LinkField& Field(std::string_view name) const;

  std::string bytes_;
  std::vector<LinkField> fields_;
};

struct VolumeSpec {
  std::string label = "System";
  // Replaces the label when not empty.
  std::u16string labelUnicode = {};
};

struct NetworkSpec {
  std::string netName = {};
  // Written behind the fields for UTF-16 names when `hasUnicode`.
  bool hasUnicode = false;
  std::u16string netNameUnicode = {};
  std::optional<std::string> device = {};
  std::u16string deviceUnicode = {};
};

struct LinkInfoSpec {
  std::optional<VolumeSpec> volume = VolumeSpec{};
  std::string basePath = {};
  std::string suffix = {};
  // A header of 36 bytes with both offsets; an empty text leaves its offset zero.
  bool hasUnicode = false;
  std::u16string basePathUnicode = {};
  std::u16string suffixUnicode = {};
  std::optional<NetworkSpec> network = {};
};

struct LinkBlock {
  std::uint32_t signature;
  std::string data;
};

// A header alone is a link already. Flags follow from what the link is given.
struct LinkBuilder {
  bool isUnicode = true;
  std::uint32_t moreFlags = 0;
  ClassIdBytes classId = kLinkClassId;
  std::int32_t iconIndex = 0;
  std::uint32_t showCommand = 1;
  std::uint16_t hotKey = 0;
  std::optional<std::string> idList = {};
  std::optional<LinkInfoSpec> info = {};
  // In UTF-16 when `isUnicode`, else one byte per unit. Written in the order of the file.
  std::vector<std::pair<LinkString, std::u16string>> strings = {};
  std::vector<LinkBlock> blocks = {};
  bool hasTerminal = true;

  // Names of the fields: those of the format ("LinkFlags", "IDListSize", "NetNameOffset"); "Count0", "Count1"
  // for the texts, "BlockSize0", "BlockSignature0" for the blocks, and "TerminalBlock".
  BuiltLink Build() const;
};

// The 780 bytes of a block of strings.
std::string StringBlockData(std::string_view ansi, std::u16string_view unicode);
// An ID list: one item per text, and the terminator.
std::string IdListOf(const std::vector<std::string>& items);

// A link with every section, every text and one block of each kind.
LinkBuilder FullLink();

}  // namespace smh
