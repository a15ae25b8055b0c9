#include "samples/link_builder.h"

#include <algorithm>
#include <stdexcept>

namespace smh {

namespace {

std::string Integer(std::uint64_t value, std::size_t width) {
  std::string bytes;
  for (std::size_t i = 0; i < width; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
  return bytes;
}

struct FlagRow {
  LinkString which;
  std::uint32_t flag;
};

constexpr FlagRow kStringOrder[] = {{LinkString::kName, kHasName},
                                    {LinkString::kRelativePath, kHasRelativePath},
                                    {LinkString::kWorkingDir, kHasWorkingDir},
                                    {LinkString::kArguments, kHasArguments},
                                    {LinkString::kIconLocation, kHasIconLocation}};

std::uint32_t FlagsOf(const LinkBuilder& link) {
  std::uint32_t flags = link.moreFlags;
  if (link.isUnicode) flags |= kIsUnicode;
  if (link.idList) flags |= kHasLinkTargetIDList;
  if (link.info) flags |= kHasLinkInfo;
  for (const auto& [which, text] : link.strings) {
    flags |= std::ranges::find(kStringOrder, which, &FlagRow::which)->flag;
  }
  return flags;
}

void PutHeader(BuiltLink& out, const LinkBuilder& link) {
  out.PutField("HeaderSize", kLinkHeaderSize, 4);
  // As two halves, so that either can be changed like any other field.
  ByteCursor classId(link.classId);
  out.PutField("LinkCLSIDLow", classId.U64(), 8);
  out.PutField("LinkCLSIDHigh", classId.U64(), 8);
  out.PutField("LinkFlags", FlagsOf(link), 4);
  out.PutField("FileAttributes", 0x20, 4);
  out.PutField("CreationTime", 0, 8);
  out.PutField("AccessTime", 0, 8);
  out.PutField("WriteTime", 0, 8);
  out.PutField("FileSize", 0, 4);
  out.PutField("IconIndex", static_cast<std::uint32_t>(link.iconIndex), 4);
  out.PutField("ShowCommand", link.showCommand, 4);
  out.PutField("HotKey", link.hotKey, 2);
  out.Put(std::string(10, '\0'));
}

void PutZeroEnded(BuiltLink& out, std::string_view text) {
  out.Put(text);
  out.Put(std::string_view("\0", 1));
}

void PutZeroEnded(BuiltLink& out, std::u16string_view text) {
  out.PutUnits(text);
  out.PutUnits(std::u16string_view(u"\0", 1));
}

void PutVolume(BuiltLink& out, const VolumeSpec& volume) {
  const std::size_t start = out.Size();
  const bool isUnicode = !volume.labelUnicode.empty();
  out.PutField("VolumeIDSize", 0, 4);
  out.PutField("DriveType", 3, 4);
  out.PutField("DriveSerialNumber", 0x1234ABCD, 4);
  out.PutField("VolumeLabelOffset", isUnicode ? 20 : 16, 4);
  if (isUnicode) {
    out.PutField("VolumeLabelOffsetUnicode", 20, 4);
    PutZeroEnded(out, volume.labelUnicode);
  } else {
    PutZeroEnded(out, volume.label);
  }
  out.Set("VolumeIDSize", out.Size() - start);
}

void PutNetwork(BuiltLink& out, const NetworkSpec& network) {
  const std::size_t start = out.Size();
  const auto here = [&](std::string_view field) { out.Set(field, out.Size() - start); };
  out.PutField("CommonNetworkRelativeLinkSize", 0, 4);
  out.PutField("CommonNetworkRelativeLinkFlags", network.device ? 3 : 2, 4);
  out.PutField("NetNameOffset", 0, 4);
  out.PutField("DeviceNameOffset", 0, 4);
  out.PutField("NetworkProviderType", 0x20000, 4);
  if (network.hasUnicode) {
    out.PutField("NetNameOffsetUnicode", 0, 4);
    out.PutField("DeviceNameOffsetUnicode", 0, 4);
  }
  here("NetNameOffset");
  PutZeroEnded(out, network.netName);
  if (network.device) {
    here("DeviceNameOffset");
    PutZeroEnded(out, *network.device);
  }
  if (network.hasUnicode) {
    here("NetNameOffsetUnicode");
    PutZeroEnded(out, network.netNameUnicode);
    here("DeviceNameOffsetUnicode");
    PutZeroEnded(out, network.deviceUnicode);
  }
  here("CommonNetworkRelativeLinkSize");
}

void PutLinkInfo(BuiltLink& out, const LinkInfoSpec& info) {
  const std::size_t start = out.Size();
  const auto here = [&](std::string_view field) { out.Set(field, out.Size() - start); };
  out.PutField("LinkInfoSize", 0, 4);
  out.PutField("LinkInfoHeaderSize", info.hasUnicode ? 36 : 28, 4);
  out.PutField("LinkInfoFlags", (info.volume ? 1 : 0) | (info.network ? 2 : 0), 4);
  for (const char* const field : {"VolumeIDOffset", "LocalBasePathOffset", "CommonNetworkRelativeLinkOffset",
                                  "CommonPathSuffixOffset"}) {
    out.PutField(field, 0, 4);
  }
  if (info.hasUnicode) {
    out.PutField("LocalBasePathOffsetUnicode", 0, 4);
    out.PutField("CommonPathSuffixOffsetUnicode", 0, 4);
  }
  if (info.volume) {
    here("VolumeIDOffset");
    PutVolume(out, *info.volume);
    here("LocalBasePathOffset");
    PutZeroEnded(out, info.basePath);
  }
  if (info.network) {
    here("CommonNetworkRelativeLinkOffset");
    PutNetwork(out, *info.network);
  }
  here("CommonPathSuffixOffset");
  PutZeroEnded(out, info.suffix);
  if (!info.basePathUnicode.empty()) {
    here("LocalBasePathOffsetUnicode");
    PutZeroEnded(out, info.basePathUnicode);
  }
  if (!info.suffixUnicode.empty()) {
    here("CommonPathSuffixOffsetUnicode");
    PutZeroEnded(out, info.suffixUnicode);
  }
  here("LinkInfoSize");
}

void PutStrings(BuiltLink& out, const LinkBuilder& link) {
  std::size_t number = 0;
  for (const FlagRow& row : kStringOrder) {
    for (const auto& [which, text] : link.strings) {
      if (which != row.which) continue;
      out.PutField("Count" + std::to_string(number++), text.size(), 2);
      if (link.isUnicode) {
        out.PutUnits(text);
      } else {
        out.Put(std::string(text.begin(), text.end()));
      }
    }
  }
}

void PutBlocks(BuiltLink& out, const LinkBuilder& link) {
  for (std::size_t i = 0; i < link.blocks.size(); ++i) {
    out.PutField("BlockSize" + std::to_string(i), link.blocks[i].data.size() + 8, 4);
    out.PutField("BlockSignature" + std::to_string(i), link.blocks[i].signature, 4);
    out.Put(link.blocks[i].data);
  }
  if (link.hasTerminal) out.PutField("TerminalBlock", 0, 4);
}

}  // namespace

const LinkField& BuiltLink::Field(std::string_view name) const {
  const auto field = std::ranges::find(fields_, name, &LinkField::name);
  if (field == fields_.end()) throw std::out_of_range("no field " + std::string(name));
  return *field;
}

void BuiltLink::Set(std::string_view field, std::uint64_t value) {
  const LinkField& place = Field(field);
  bytes_.replace(place.offset, place.width, Integer(value, place.width));
}

BuiltLink BuiltLink::With(std::string_view field, std::uint64_t value) const {
  BuiltLink changed = *this;
  changed.Set(field, value);
  return changed;
}

std::uint64_t BuiltLink::ValueOf(std::string_view field) const {
  const LinkField& place = Field(field);
  std::uint64_t value = 0;
  std::memcpy(&value, bytes_.data() + place.offset, place.width);
  return value;
}

BuiltLink BuiltLink::CutTo(std::size_t size) const {
  BuiltLink cut = *this;
  cut.bytes_.resize(size);
  std::erase_if(cut.fields_, [&](const LinkField& field) { return field.offset + field.width > size; });
  return cut;
}

BuiltLink BuiltLink::Followed(std::string_view tail) const {
  BuiltLink longer = *this;
  longer.Put(tail);
  return longer;
}

void BuiltLink::PutUnits(std::u16string_view units) {
  for (const char16_t unit : units) bytes_ += Integer(unit, 2);
}

void BuiltLink::PutField(std::string name, std::uint64_t value, std::size_t width) {
  fields_.push_back({std::move(name), bytes_.size(), width});
  bytes_ += Integer(value, width);
}

BuiltLink LinkBuilder::Build() const {
  BuiltLink out;
  PutHeader(out, *this);
  if (idList) {
    out.PutField("IDListSize", idList->size(), 2);
    out.Put(*idList);
  }
  if (info) PutLinkInfo(out, *info);
  PutStrings(out, *this);
  PutBlocks(out, *this);
  return out;
}

std::string StringBlockData(std::string_view ansi, std::u16string_view unicode) {
  BuiltLink data;
  data.Put(ansi);
  data.Put(std::string(260 - ansi.size(), '\0'));
  data.PutUnits(unicode);
  data.Put(std::string(2 * (260 - unicode.size()), '\0'));
  return data.Text();
}

std::string IdListOf(const std::vector<std::string>& items) {
  std::string list;
  for (const std::string& item : items) list += Integer(item.size() + 2, 2) + item;
  return list + Integer(0, 2);
}

LinkBuilder FullLink() {
  LinkBuilder link;
  link.iconIndex = -3;
  link.showCommand = 7;
  link.hotKey = 0x0641;
  link.idList = IdListOf({"first", "second"});
  link.info = LinkInfoSpec{.volume = VolumeSpec{.label = {}, .labelUnicode = u"System"},
                           .basePath = "C:\\Tools\\",
                           .suffix = "tool.exe",
                           .hasUnicode = true,
                           .basePathUnicode = u"C:\\Tools\u00E4\\",
                           .suffixUnicode = u"tool\u4E2D.exe",
                           .network = NetworkSpec{.netName = "\\\\server\\share",
                                                  .hasUnicode = true,
                                                  .netNameUnicode = u"\\\\server\\sh\u00E4re",
                                                  .device = "Z:",
                                                  .deviceUnicode = u"Z:"}};
  link.strings = {{LinkString::kName, u"Does things"},
                  {LinkString::kRelativePath, u"..\\tool.exe"},
                  {LinkString::kArguments, u"/start \"a b\""},
                  {LinkString::kWorkingDir, u"C:\\Work"},
                  {LinkString::kIconLocation, u"C:\\Tools\\icons.dll"}};
  link.blocks = {{0xA0000001, StringBlockData("%ansi%\\tool.exe", u"%wide%\\tool.exe")},
                 {0xA0000002, std::string(196, 'c')},
                 {0xA0000003, std::string(88, 't')},
                 {0xA0000004, std::string(4, 'f')},
                 {0xA0000005, std::string(8, 's')},
                 {0xA0000006, StringBlockData("darwin", u"darwin")},
                 {0xA0000007, StringBlockData("%ansi%\\icon.ico", u"%wide%\\icon.ico")},
                 {0xA0000008, std::string(17, 'h')},
                 {0xA0000009, std::string(5, 'p')},
                 {0xA000000B, std::string(20, 'k')},
                 {0xA000000C, IdListOf({"vista"})},
                 {0xDEADBEEF, std::string()}};
  return link;
}

}  // namespace smh
