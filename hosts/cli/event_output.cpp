#include "hosts/cli/event_output.h"

#include "hosts/cli/console.h"
#include "hosts/cli/table_output.h"
#include "hosts/cli/texts/table_texts.h"
#include "hosts/common/csv_output.h"
#include "hosts/common/iso_time.h"
#include "hosts/common/json_output.h"
#include "hosts/common/known_text.h"
#include "hosts/common/location_names.h"
#include "hosts/common/reading.h"
#include "hosts/common/text_encoding.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace smh {

namespace {

constexpr std::wstring_view kUntold[] = {L"index", L"imageIndex", L"lastAccessTime"};

std::wstring JsonChanges(std::span<const FieldChange> changes) {
  std::wstring list;
  for (const FieldChange& change : changes) {
    list += list.empty() ? L"{" : L",{";
    list += JsonMember(L"key", JsonText(change.key)) + L',';
    list += JsonMember(L"old", JsonValue(change.before)) + L',' + JsonMember(L"new", JsonValue(change.now)) +
            L'}';
  }
  return L'[' + list + L']';
}

std::wstring TextChanges(std::span<const FieldChange> changes) {
  std::wstring list;
  for (const FieldChange& change : changes) {
    if (!list.empty()) list += L"; ";
    list.append(change.key).append(L": \"").append(CellText(change.before));
    list.append(L"\" -> \"").append(CellText(change.now)).append(L"\"");
  }
  return list;
}

}  // namespace

std::vector<FieldChange> ChangesOf(const WatchEvent& event) {
  std::vector<FieldChange> changes;
  if (!event.before) return changes;
  for (const ItemField& field : ItemFields()) {
    if (std::ranges::find(kUntold, field.key) != std::end(kUntold)) continue;
    FieldValue before = field.read(*event.before);
    FieldValue now = field.read(event.item);
    if (before != now) changes.push_back({field.key, std::move(before), std::move(now)});
  }
  return changes;
}

EventPrinter::EventPrinter(const Arguments& arguments, const Selector& selector)
    : arguments_(arguments), selector_(selector), fields_(SelectFields(ItemFields(), arguments.columns)) {}

void EventPrinter::Begin() const {
  if (arguments_.format == OutputFormat::kCsv)
    WriteOutput(CsvHeader<ItemRecord>(fields_, L"event,time,changes,"));
}

std::wstring EventPrinter::Text(const WatchEvent& event) const {
  const std::wstring time = IsoTimeNow();
  const std::vector<FieldChange> changes = ChangesOf(event);
  std::wstring first;
  switch (arguments_.format) {
    case OutputFormat::kJson:
      first = JsonMember(L"event", JsonText(event.kind)) + L',' + JsonMember(L"time", JsonText(time)) + L',';
      if (event.before) first += JsonMember(L"changes", JsonChanges(changes)) + L',';
      return JsonObject<ItemRecord>(fields_, event.item, first) + L"\n";
    case OutputFormat::kCsv:
      first.append(event.kind).append(L",").append(time).append(L",");
      return CsvRow<ItemRecord>(fields_, event.item, first + CsvField(TextChanges(changes)) + L',');
    case OutputFormat::kTable:
      break;
  }
  std::wstring line = time;
  std::wstring kind = Known(texts::kEventKinds, event.kind).Shown();
  kind.resize(std::max<std::size_t>(kind.size() + 1, 10), L' ');
  line.append(L"  ").append(kind);
  line.append(FullTitle(event.item.location))
      .append(L"  ")
      .append(Printable(event.item.caption))
      .append(L"  ");
  // What is told of a new name would be the same for each that was switched.
  const bool isTold = event.kind == L"changed";
  return line.append(isTold ? TextChanges(changes) : Printable(event.item.command)).append(1, L'\n');
}

void EventPrinter::Print(const Library& library, WatchEvent event) const {
  ResolveFiles(library, {&event.item, 1});
  if (event.before) ResolveFiles(library, {&*event.before, 1});
  const bool wasMeant = event.before && IsMeant(selector_, *event.before);
  if (!wasMeant && !IsMeant(selector_, event.item)) return;
  if (event.before && ChangesOf(event).empty()) return;
  WriteOutput(Text(event));
}

}  // namespace smh
