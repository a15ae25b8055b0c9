#include "hosts/gui/entries_look.h"

#include "hosts/gui/comparison.h"
#include "hosts/gui/entry_words.h"
#include "hosts/gui/theme.h"
#include "hosts/gui/visible_text.h"

namespace smh {

namespace {

// The colour is not all that tells a difference: its word stands in front of the status.
std::wstring CellText(const EntryRow& row, std::size_t column) {
  if (row.IsGone() && (column == kTrustColumn || column == kStartsColumn)) return {};
  if (!row.difference || column != kStatusColumn) return EntryColumns()[column].text(row.item);
  std::wstring text(DifferenceTitle(row.difference->kind));
  return row.IsGone() ? text : text + L": " + StatusText(row.item);
}

// An entry whose caption others have, too, says here which one it is.
std::wstring ShownText(const EntryRow& row, std::size_t column) {
  const std::wstring text = MakeVisible(CellText(row, column)).text;
  return column == kNameColumn && !row.twinMark.empty() ? text + L"  \u2013  " + row.twinMark : text;
}

Role RoleOf(DifferenceKind kind) noexcept {
  switch (kind) {
    case DifferenceKind::kAdded:
      return Role::kAddedText;
    case DifferenceKind::kRemoved:
      return Role::kRemovedText;
    case DifferenceKind::kChanged:
      return Role::kChangedText;
    default:
      return Role::kSwitchedText;
  }
}

}  // namespace

ListSource LookOf(const EntryRows& rows, const ChosenColumns& columns) {
  ListSource source;
  source.text = [&rows, &columns](std::size_t row, std::size_t column) {
    return ShownText(*rows.Shown()[row], columns.At(column));
  };
  source.copied = [&rows, &columns](std::size_t row, std::size_t column) {
    return CellText(*rows.Shown()[row], columns.At(column));
  };
  source.image = [&rows, &columns](std::size_t row, std::size_t column) {
    const ItemRecord& item = rows.Shown()[row]->item;
    if (columns.At(column) == kNameColumn) return static_cast<int>(item.imageIndex);
    if (rows.Shown()[row]->IsGone()) return I_IMAGENONE;
    return columns.At(column) == kTrustColumn ? static_cast<int>(TrustPicture(item)) : I_IMAGENONE;
  };
  source.checked = [&rows](std::size_t row) { return rows.Shown()[row]->item.enabled; };
  source.color = [&rows](std::size_t row) {
    if (const auto& difference = rows.Shown()[row]->difference) return ColorOf(RoleOf(difference->kind));
    const RowTone tone = ToneOfRow(rows.Shown()[row]->item);
    if (tone == RowTone::kRed) return ColorOf(Role::kAlarmText);
    return ColorOf(tone == RowTone::kGrey ? Role::kGreyText : Role::kText);
  };
  return source;
}

}  // namespace smh
