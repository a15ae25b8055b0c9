#include "shelllink/uShellLinkInfo.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/format.h"
#include "infra/runtime/text.h"
#include "shelllink/desktop_folder.h"
#include "shelllink/format/item_strings.h"
#include "shelllink/link_file.h"
#include "shelllink/link_text.h"

#include <algorithm>
#include <span>
#include <utility>

namespace smh {

namespace {

constexpr wchar_t kLinkExtension[] = L".lnk";
// Links are a few kilobytes; this bounds what a hostile file can make us allocate.
constexpr std::uint64_t kLargestFile = 5'242'880;

constexpr wchar_t kInvalidExtension[] = L"Invalid file extension \"%s\", expected \"%s\" (%s).";
constexpr wchar_t kIncorrectSizeOrData[] = L"Incorrect file size or format data. (%s)";
constexpr wchar_t kInvalidHeaderSize[] = L"Invalid header size \"%d\", expected \"%d\" (%s).";
constexpr wchar_t kInvalidClassId[] = L"Invalid file GUID \"%s\", expected \"%s\" or \"%s\" (%s).";
constexpr wchar_t kInvalidLinkInfo[] = L"Invalid LinkInfo section format (%s).";

// Braced and in capitals.
std::wstring GuidText(const ClassIdBytes& bytes) {
  constexpr int kUnits = 39;
  wchar_t text[kUnits];
  StringFromGUID2(std::bit_cast<GUID>(bytes), text, kUnits);
  return text;
}

std::wstring FaultText(const LinkFormatError& error, std::wstring_view fileName) {
  switch (error.Fault()) {
    case LinkFault::kHeaderSize:
      return Format(kInvalidHeaderSize, error.HeaderSize(), kLinkHeaderSize, fileName);
    case LinkFault::kClassId:
      return Format(kInvalidClassId, GuidText(error.ClassId()), GuidText(kSwappedLinkClassId),
                    GuidText(kLinkClassId), fileName);
    case LinkFault::kLinkInfo:
      return Format(kInvalidLinkInfo, fileName);
    case LinkFault::kSizeOrData:
      break;
  }
  return Format(kIncorrectSizeOrData, fileName);
}

}  // namespace

void TShellLinkInfo::SetFileName(std::wstring_view fileName) {
  if (!fileName.empty() && SameText(fileName, fileName_)) return;
  fileName_ = fileName;
  stamp_ = {};
  sections_.Clear();
  if (!fileName_.empty()) Load();
}

void TShellLinkInfo::SetBytes(std::wstring_view fileName, std::string_view bytes) {
  fileName_ = fileName;
  stamp_ = {};
  sections_.Clear();
  CheckName();
  SetStamp({.size = bytes.size()});
  auto copy = std::make_unique_for_overwrite<std::byte[]>(bytes.size());
  std::ranges::copy(std::as_bytes(std::span(bytes)), copy.get());
  Parse(std::move(copy));
}

void TShellLinkInfo::CheckName() const {
  const std::wstring_view extension = ExtensionPart(fileName_);
  if (SameText(extension, kLinkExtension)) return;
  throw TShellLinkInfoException(Format(kInvalidExtension, extension, kLinkExtension, fileName_));
}

void TShellLinkInfo::SetStamp(const FileStamp& stamp) {
  if (stamp.size > kLargestFile) throw TShellLinkInfoException(Format(kIncorrectSizeOrData, fileName_));
  stamp_ = stamp;
}

void TShellLinkInfo::Load() {
  CheckName();
  const LinkFile file(fileName_);
  SetStamp(file.Stamp());
  Parse(file.ReadAll());
}

void TShellLinkInfo::Parse(std::unique_ptr<std::byte[]> bytes) {
  try {
    sections_.Load(std::move(bytes), static_cast<std::size_t>(stamp_.size));
  } catch (const LinkFormatError& error) {
    throw TShellLinkInfoException(FaultText(error, fileName_));
  }
}

std::wstring TShellLinkInfo::Target() const {
  std::wstring target = ToWide(sections_.EnvironmentTarget());
  if (target.empty()) target = ShellTarget();
  if (!target.empty() || !sections_.MayUseLinkInfo()) return target;
  const TLinkInfo& info = sections_.LinkInfo();
  target = ToWide(info.LocalBasePath()) + ToWide(info.CommonPathSuffix());
  return target.empty() ? ToWide(info.NetName()) : target;
}

std::wstring TShellLinkInfo::Description() const {
  std::wstring stored = StoredDescription();
  return stored.starts_with(L'@') ? DLLGlobals::LoadIndirectString(stored) : stored;
}

std::wstring TShellLinkInfo::IconLocation() const {
  return ToWide(sections_.IconLocation());
}

std::wstring TShellLinkInfo::Text(LinkString which) const {
  return ToWide(sections_.Strings().Text(which));
}

// The shell reads a list, and the strings in it, without knowing where they end.
std::wstring TShellLinkInfo::ShellTarget() const {
  const TLinkTargetIDList& list = sections_.TargetIDList();
  const bool isSafe = list.IsWellFormed() && DoItemsHoldTheirStrings(list.List());
  return isSafe ? ParsingName(list.List()) : std::wstring();
}

bool IsRefusedLink(const std::wstring& file) {
  if (!SameText(ExtensionPart(file), kLinkExtension)) return false;
  try {
    const TShellLinkInfo link(file);
    return false;
  } catch (const Exception&) {
    return true;
  }
}

}  // namespace smh
