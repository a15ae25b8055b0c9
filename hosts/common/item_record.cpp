#include "hosts/common/item_record.h"

#include "core/contracts/location_table.h"
#include "hosts/common/iso_time.h"
#include "hosts/common/item_property.h"
#include "hosts/common/location_names.h"
#include "hosts/common/short_id.h"
#include "hosts/common/texts/location_texts.h"

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

struct ReasonName {
  std::int32_t flag;
  std::wstring_view name;
};
constexpr ReasonName kReasonNames[] = {
    {kReasonDisabled, L"disabled"},
    {kReasonSwitchedOff, L"switchedOff"},
    {kReasonPolicy, L"policy"},
    {kReasonBlocked, L"blocked"},
    {kReasonNotApproved, L"notApproved"},
    {kReasonNotRead, L"notRead"},
    {kReasonOnlyInIEMode, L"onlyInIEMode"},
    {kReasonMissing, L"missing"},
    {kReasonUnreachable, L"unreachable"},
    {kReasonOnlyFor64, L"onlyFor64"},
    {kReasonOnlyFor32, L"onlyFor32"},
};

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

FieldValue TextOrNone(const std::wstring& text) {
  return text.empty() ? FieldValue() : FieldValue(text);
}

FieldValue TwinOf(std::int32_t twin) {
  if (twin == kTwinNone) return {};
  return TextOf(twin == kTwinSame ? L"same" : L"other");
}

using R = const ItemRecord&;

constexpr ItemField kItemFields[] = {
    {L"id", [](R item) { return TextOf(item.id); }},
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
    {L"reachability", [](R item) { return TextOf(ReachabilityName(item.reachability)); }},
    {L"servedFile", [](R item) { return TextOrNone(item.servedFile); }},
    {L"describedFile", [](R item) { return TextOrNone(item.describedFile); }},
    {L"startedThrough", [](R item) { return TextOrNone(item.startedThrough); }},
    {L"root", [](R item) { return TextOrNone(item.root); }},
    {L"view", [](R item) { return item.view == 0 ? FieldValue() : NumberOf(item.view); }},
    {L"key", [](R item) { return TextOrNone(item.key); }},
    {L"valueName", [](R item) { return item.value ? TextOf(*item.value) : FieldValue(); }},
    {L"disabledBy", [](R item) { return TextOrNone(item.disabledBy); }},
    {L"twin", [](R item) { return TwinOf(item.twin); }},
    {L"twinCommand",
     [](R item) { return item.twin == kTwinOther ? TextOf(item.twinCommand) : FieldValue(); }},
    {L"starts", [](R item) { return TextOf(StartsName(item.starts)); }},
    {L"reasons", [](R item) { return FieldValue(ReasonNames(item.reasons)); }},
    {L"switchedOffSince", [](R item) { return TimeOf(item.switchedOffSince); }},
    {L"trust", [](R item) { return item.trust ? TextOf(TrustName(item.trust->word)) : FieldValue(); }},
    {L"signature",
     [](R item) { return item.trust ? TextOf(SignatureName(item.trust->signature)) : FieldValue(); }},
    {L"signer", [](R item) { return item.trust ? TextOrNone(item.trust->Signer()) : FieldValue(); }},
    {L"sha256", [](R item) { return item.trust ? TextOrNone(item.trust->sha256) : FieldValue(); }},
};

void ReadFacts(const FactReader& facts, ItemRecord& record) {
  const auto text = [&](std::int32_t fact) { return facts.Text(fact).value_or(std::wstring()); };
  record.reachability =
      facts.Number(kFactReachability).value_or(record.fileFound ? kFileFound : kFileMissing);
  record.describedFile = text(kFactDescribedFile);
  record.servedFile = text(kFactServedFile);
  record.startedThrough = text(kFactStartedThrough);
  record.root = text(kFactRoot);
  record.view = facts.Number(kFactView).value_or(0);
  record.key = text(kFactKey);
  record.value = facts.Text(kFactValueName);
  record.disabledBy = text(kFactDisabledBy);
  record.twin = facts.Number(kFactTwin).value_or(kTwinNone);
  record.twinCommand = text(kFactTwinCommand);
  record.starts = facts.Number(kFactStarts).value_or(kStartsUnknown);
  record.reasons = facts.Number(kFactStartReasons).value_or(0);
  record.switchedOffSince = facts.Date(kFactSwitchedOffSince);
  record.canSwitch = facts.Flag(kFactCanSwitch);
}

}  // namespace

ItemRecord ReadItemRecord(IStartupItem& item) {
  ItemRecord record;
  record.index = item.GetIndex();
  record.location = item.GetLocation();
  record.name = TakeText([&](BoundaryText* name) { return item.GetName(name); });
  record.id = WholeId(record.location, record.name).substr(0, kShortIdDigits);
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
  ReadFacts(FactReader(item), record);
  return record;
}

const std::wstring& ShownFile(const ItemRecord& item) noexcept {
  if (!item.describedFile.empty()) return item.describedFile;
  return item.file.empty() ? item.command : item.file;
}

std::wstring_view ReachabilityName(std::int32_t reachability) noexcept {
  return reachability == kFileFound         ? L"found"
         : reachability == kFileUnreachable ? L"unreachable"
                                            : L"missing";
}

std::vector<std::wstring_view> ActionNames(std::uint32_t can) {
  std::vector<std::wstring_view> names;
  for (std::size_t action = 0; action < std::size(kActionNames); ++action) {
    if ((can >> action & 1) != 0) names.push_back(kActionNames[action]);
  }
  return names;
}

std::wstring_view RatingName(std::int32_t rating) noexcept {
  return rating == 0 ? L"trusted" : rating == 2 ? L"risky" : L"unknown";
}

std::wstring_view StartsName(std::int32_t starts) noexcept {
  return starts == kStartsYes ? L"yes" : starts == kStartsNo ? L"no" : L"unknown";
}

std::vector<std::wstring_view> ReasonNames(std::int32_t reasons) {
  std::vector<std::wstring_view> names;
  for (const ReasonName& row : kReasonNames) {
    if ((reasons & row.flag) != 0) names.push_back(row.name);
  }
  return names;
}

std::wstring_view StateName(bool enabled) noexcept {
  return enabled ? L"enabled" : L"disabled";
}

std::span<const ItemField> ItemFields() noexcept {
  return kItemFields;
}

void AssignShortIds(std::span<ItemRecord> items) {
  std::vector<std::wstring> ids;
  for (const ItemRecord& item : items) ids.push_back(WholeId(item.location, item.name));
  ids = ShortIds(ids);
  for (std::size_t i = 0; i < ids.size(); ++i) items[i].id = std::move(ids[i]);
}

std::vector<std::pair<std::wstring, std::wstring>> ItemPlace(const ItemRecord& item) {
  if (item.root.empty()) return {{texts::kPlaceFile.Get(), item.name}};
  const std::wstring value = item.value.value_or(std::wstring());
  return {{texts::kPlaceRoot.Get(), item.root},
          {texts::kPlaceView.Get(), (item.view == 64 ? texts::kPlaceView64 : texts::kPlaceView32).Get()},
          {texts::kPlaceKey.Get(), item.key},
          {texts::kPlaceValue.Get(), value.empty() ? texts::kPlaceUnnamed.Get() : value}};
}

}  // namespace smh
