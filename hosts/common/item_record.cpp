#include "hosts/common/item_record.h"

#include "core/contracts/location_table.h"
#include "hosts/common/item_property.h"
#include "hosts/common/location_names.h"
#include "infra/registry/full_value_path.h"

#include <iterator>

namespace smh {

namespace {

using TextMember = std::wstring ItemRecord::*;

struct TextField {
  ItemProperty property;
  TextMember member;
};
constexpr TextField kTextFields[] = {
    {kPropertyCaption, &ItemRecord::caption},
    {kPropertyCommand, &ItemRecord::command},
    {kPropertyDescription, &ItemRecord::description},
    {kPropertyWorkingFolder, &ItemRecord::workingFolder},
    {kPropertyProductName, &ItemRecord::productName},
    {kPropertyComments, &ItemRecord::comments},
    {kPropertyVersionNumber, &ItemRecord::versionNumber},
    {kPropertyInternalName, &ItemRecord::internalName},
    {kPropertyOriginalFilename, &ItemRecord::originalFilename},
    {kPropertyProductVersion, &ItemRecord::productVersion},
    {kPropertyFileVersion, &ItemRecord::fileVersion},
    {kPropertyVersion, &ItemRecord::version},
    {kPropertyPrivateBuild, &ItemRecord::privateBuild},
    {kPropertySpecialBuild, &ItemRecord::specialBuild},
    {kPropertyCompany, &ItemRecord::company},
    {kPropertyLegalCopyright, &ItemRecord::legalCopyright},
    {kPropertyLegalTrademarks, &ItemRecord::legalTrademarks},
    {kPropertyFileTypeName, &ItemRecord::fileTypeName},
};

// By ItemAction.
constexpr std::wstring_view kActionNames[] = {L"delete",        L"enable",  L"disable",     L"move",
                                              L"changeCommand", L"execute", L"showDetails", L"showLocation"};
static_assert(std::size(kActionNames) == kActionShowLocation + 1);

FieldValue TextOf(std::wstring_view text) {
  return std::wstring(text);
}

FieldValue TimeOf(const std::optional<double>& date) {
  std::wstring text = IsoTime(date);
  return text.empty() ? FieldValue() : FieldValue(std::move(text));
}

FieldValue NumberOf(std::int64_t number) {
  return number;
}

FieldValue SizeOf(const std::optional<std::int64_t>& size) {
  return size ? FieldValue(*size) : FieldValue();
}

using R = const ItemRecord&;

constexpr ItemField kItemFields[] = {
    {L"index", [](R item) { return NumberOf(item.index); }},
    {L"location", [](R item) { return TextOf(LocationName(item.location)); }},
    {L"name", [](R item) { return TextOf(item.name); }},
    {L"caption", [](R item) { return TextOf(item.caption); }},
    {L"enabled", [](R item) { return FieldValue(item.enabled); }},
    {L"fileFound", [](R item) { return FieldValue(item.fileFound); }},
    {L"command", [](R item) { return TextOf(item.command); }},
    {L"file", [](R item) { return TextOf(item.file); }},
    {L"description", [](R item) { return TextOf(item.description); }},
    {L"workingFolder", [](R item) { return TextOf(item.workingFolder); }},
    {L"linkNumber", [](R item) { return NumberOf(item.linkNumber); }},
    {L"productName", [](R item) { return TextOf(item.productName); }},
    {L"comments", [](R item) { return TextOf(item.comments); }},
    {L"versionNumber", [](R item) { return TextOf(item.versionNumber); }},
    {L"internalName", [](R item) { return TextOf(item.internalName); }},
    {L"originalFilename", [](R item) { return TextOf(item.originalFilename); }},
    {L"productVersion", [](R item) { return TextOf(item.productVersion); }},
    {L"fileVersion", [](R item) { return TextOf(item.fileVersion); }},
    {L"version", [](R item) { return TextOf(item.version); }},
    {L"privateBuild", [](R item) { return TextOf(item.privateBuild); }},
    {L"specialBuild", [](R item) { return TextOf(item.specialBuild); }},
    {L"company", [](R item) { return TextOf(item.company); }},
    {L"legalCopyright", [](R item) { return TextOf(item.legalCopyright); }},
    {L"legalTrademarks", [](R item) { return TextOf(item.legalTrademarks); }},
    {L"fileSize", [](R item) { return SizeOf(item.fileSize); }},
    {L"creationTime", [](R item) { return TimeOf(item.creationTime); }},
    {L"lastAccessTime", [](R item) { return TimeOf(item.lastAccessTime); }},
    {L"lastWriteTime", [](R item) { return TimeOf(item.lastWriteTime); }},
    {L"fileTypeName", [](R item) { return TextOf(item.fileTypeName); }},
    {L"rating", [](R item) { return TextOf(RatingName(item.rating)); }},
    {L"imageIndex", [](R item) { return NumberOf(item.imageIndex); }},
    {L"can", [](R item) { return FieldValue(ActionNames(item.can)); }},
};

// The name of a value may hold backslashes; an entry's caption, when it is that name, tells where it begins.
void TakeWholeValueName(const std::wstring& caption, RegistryValueAddress& address) {
  const std::wstring path = address.key + address.valueName;
  if (!path.ends_with(L'\\' + caption)) return;
  address.key = path.substr(0, path.size() - caption.size());
  address.valueName = caption;
}

std::wstring PlainKey(std::wstring key) {
  if (key.ends_with(L'\\')) key.pop_back();
  if (key.starts_with(L'\\')) key.erase(0, 1);
  return key;
}

}  // namespace

ItemRecord ReadItemRecord(IStartupItem& item) {
  ItemRecord record;
  record.index = item.GetIndex();
  record.location = item.GetLocation();
  record.name = TakeText([&](BoundaryText* name) { return item.GetName(name); });
  record.imageIndex = item.GetImageIndex();
  record.enabled = FlagProperty(item, kPropertyEnabled);
  record.fileFound = FlagProperty(item, kPropertyFileFound);
  for (const TextField& field : kTextFields) record.*field.member = TextProperty(item, field.property);
  record.linkNumber = NumberProperty(item, kPropertyLinkNumber, 0);
  record.rating = NumberProperty(item, kPropertyRating, 1);
  record.creationTime = DateProperty(item, kPropertyCreationTime);
  record.lastAccessTime = DateProperty(item, kPropertyLastAccessTime);
  record.lastWriteTime = DateProperty(item, kPropertyLastWriteTime);
  if (record.lastWriteTime) record.fileSize = SizeProperty(item, kPropertyFileSize);
  for (std::int32_t action = kActionDelete; action <= kActionShowLocation; ++action) {
    if (item.CanDo(action)) record.can |= 1u << action;
  }
  return record;
}

std::vector<std::wstring_view> ActionNames(std::uint32_t can) {
  std::vector<std::wstring_view> names;
  for (std::size_t action = 0; action < std::size(kActionNames); ++action) {
    if ((can >> action & 1) != 0) names.push_back(kActionNames[action]);
  }
  return names;
}

std::wstring JoinNames(std::span<const std::wstring_view> names, std::wstring_view separator) {
  std::wstring list;
  for (const std::wstring_view name : names) {
    if (!list.empty()) list += separator;
    list += name;
  }
  return list;
}

std::wstring_view RatingName(std::int32_t rating) noexcept {
  return rating == 0 ? L"trusted" : rating == 2 ? L"risky" : L"unknown";
}

std::wstring_view StateName(bool enabled) noexcept {
  return enabled ? L"enabled" : L"disabled";
}

std::wstring IsoTime(const std::optional<double>& date) {
  SYSTEMTIME time;
  if (!date || !VariantTimeToSystemTime(*date, &time)) return {};
  wchar_t text[32];
  wsprintfW(text, L"%04d-%02d-%02dT%02d:%02d:%02d", time.wYear, time.wMonth, time.wDay, time.wHour,
            time.wMinute, time.wSecond);
  return text;
}

std::span<const ItemField> ItemFields() noexcept {
  return kItemFields;
}

std::vector<std::pair<std::wstring, std::wstring>> ItemPlace(const ItemRecord& item) {
  RegistryValueAddress address;
  ParseFullValuePath(item.name, address.viewBits, address.valueName, address.key, address.root);
  if (address.root == nullptr) return {{L"File", item.name}};
  TakeWholeValueName(item.caption, address);
  if (FamilyOf(LocationRowOf(item.location)).entriesAreKeys) address.valueName.clear();
  return {{L"Root", std::wstring(RootKeyName(address.root))},
          {L"View", address.viewBits == KEY_WOW64_64KEY ? L"64-bit" : L"32-bit"},
          {L"Key", PlainKey(address.key)},
          {L"Value", address.valueName.empty() ? L"(Default)" : address.valueName}};
}

}  // namespace smh
