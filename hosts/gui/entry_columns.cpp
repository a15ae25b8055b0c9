#include "hosts/gui/entry_columns.h"

#include "hosts/common/location_names.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/text.h"

namespace smh {

namespace {

constexpr EntryColumn kColumns[] = {
    {L"Name", 155, CaptionText},
    {L"Status", 100, StatusText},
    {L"Company", 125, [](const ItemRecord& item) { return Printable(item.company); }},
    {L"Rating", 80, RatingText},
    {L"Command", 205, [](const ItemRecord& item) { return Printable(item.command); }},
    {L"Location", 140, [](const ItemRecord& item) { return FullTitle(item.location); }},
};

}  // namespace

std::span<const EntryColumn> EntryColumns() noexcept {
  return kColumns;
}

bool IsFileMissing(const ItemRecord& item) noexcept {
  return !item.fileFound && !item.command.empty();
}

bool IsLocked(const ItemRecord& item) noexcept {
  return !item.Can(kActionEnable) && !item.Can(kActionDisable) && !item.Can(kActionDelete);
}

std::wstring StatusText(const ItemRecord& item) {
  std::wstring text = item.enabled ? L"On" : L"Off";
  if (IsFileMissing(item)) text += L", file missing";
  if (IsLocked(item)) text += L", locked";
  return text;
}

std::wstring RatingText(const ItemRecord& item) {
  std::wstring text(RatingName(item.rating));
  text.front() = static_cast<wchar_t>(text.front() - L'a' + L'A');
  return text;
}

std::wstring CaptionText(const ItemRecord& item) {
  return Printable(item.caption.empty() ? FileNamePart(item.name) : std::wstring_view(item.caption));
}

}  // namespace smh
