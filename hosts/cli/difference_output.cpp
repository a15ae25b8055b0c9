#include "hosts/cli/difference_output.h"

#include "hosts/cli/texts/table_texts.h"
#include "hosts/common/location_names.h"
#include "hosts/common/start_words.h"
#include "hosts/common/text_encoding.h"

namespace smh {

namespace {

using D = const Difference&;

FieldValue EnabledOf(const SnapshotEntry* entry) {
  return entry == nullptr ? FieldValue() : FieldValue(entry->enabled);
}

FieldValue SwitchedOffOf(const SnapshotEntry* entry) {
  return entry == nullptr || !entry->switchedOff ? FieldValue() : FieldValue(*entry->switchedOff);
}

FieldValue CommandOf(const SnapshotEntry* entry) {
  return entry == nullptr ? FieldValue() : FieldValue(entry->command);
}

FieldValue TwinOf(const SnapshotEntry* entry) {
  return entry == nullptr || !entry->twin ? FieldValue() : FieldValue(*entry->twin);
}

constexpr Field<Difference> kFields[] = {
    {L"difference", [](D difference) { return FieldValue(std::wstring(DifferenceName(difference.kind))); }},
    {L"location",
     [](D difference) { return FieldValue(std::wstring(LocationName(difference.Entry().location))); }},
    {L"name", [](D difference) { return FieldValue(std::wstring(difference.Entry().Name())); }},
    {L"root",
     [](D difference) {
       const std::wstring& root = difference.Entry().root;
       return root.empty() ? FieldValue() : FieldValue(root);
     }},
    {L"view",
     [](D difference) {
       const std::int32_t view = difference.Entry().view;
       return view == 0 ? FieldValue() : FieldValue(std::int64_t{view});
     }},
    {L"enabledBefore", [](D difference) { return EnabledOf(difference.before); }},
    {L"commandBefore", [](D difference) { return CommandOf(difference.before); }},
    {L"twinBefore", [](D difference) { return TwinOf(difference.before); }},
    {L"enabledAfter", [](D difference) { return EnabledOf(difference.after); }},
    {L"commandAfter", [](D difference) { return CommandOf(difference.after); }},
    {L"twinAfter", [](D difference) { return TwinOf(difference.after); }},
    {L"switchedOffBefore", [](D difference) { return SwitchedOffOf(difference.before); }},
    {L"switchedOffAfter", [](D difference) { return SwitchedOffOf(difference.after); }},
};

std::wstring Cell(const SnapshotEntry* entry) {
  if (entry == nullptr) return {};
  const Text& text = entry->switchedOff == true ? texts::kSwitchedOffState : texts::kStateAndCommand;
  const std::wstring cell = Format(text, StateText(entry->enabled), Printable(entry->command));
  return entry->twin ? Format(texts::kAndIn32, cell, Printable(*entry->twin)) : cell;
}

}  // namespace

std::span<const Field<Difference>> DifferenceFields() noexcept {
  return kFields;
}

TextTable DifferenceTable(std::span<const Difference> differences) {
  TextTable table{
      .header = {texts::kDifferenceColumn.Get(), texts::kLocationColumn.Get(), texts::kNameColumnTitle.Get(),
                 texts::kBeforeColumn.Get(), texts::kAfterColumn.Get()},
      .rows = {}};
  for (const Difference& difference : differences) {
    table.rows.push_back(
        {DifferenceText(difference.kind).Get(), std::wstring(LocationName(difference.Entry().location)),
         Printable(difference.Entry().Name()), Cell(difference.before), Cell(difference.after)});
  }
  return table;
}

}  // namespace smh
