#include "hosts/cli/commands/commands.h"
#include "hosts/cli/console.h"
#include "hosts/cli/table_output.h"
#include "hosts/common/json_output.h"
#include "hosts/common/location_names.h"
#include "hosts/common/reading.h"

#include <array>

namespace smh {

namespace {

struct LocationSummary {
  std::size_t enabled = 0;
  std::size_t disabled = 0;
};
using Summaries = std::array<LocationSummary, kLastLocation + 1>;

Summaries Summarize(std::span<const ItemRecord> items) {
  Summaries summaries{};
  for (const ItemRecord& item : items) {
    if (item.location < kFirstLocation || item.location > kLastLocation) continue;
    LocationSummary& summary = summaries[static_cast<std::size_t>(item.location)];
    ++(item.enabled ? summary.enabled : summary.disabled);
  }
  return summaries;
}

std::wstring AsTable(const Summaries& summaries) {
  TextTable table{.header = {L"Location", L"Family", L"Key or folder", L"Can", L"Enabled", L"Disabled"},
                  .rows = {},
                  .pathColumn = 2};
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    const LocationSummary& summary = summaries[static_cast<std::size_t>(location)];
    const LocationRow& row = LocationRowOf(location);
    table.rows.push_back({std::wstring(row.memberName), std::wstring(FamilyOf(row).name), LocationPlace(row),
                          JoinNames(LocationActions(row), L" "), std::to_wstring(summary.enabled),
                          std::to_wstring(summary.disabled)});
  }
  return table.Text(ConsoleWidth());
}

std::wstring AsJson(const Summaries& summaries) {
  std::vector<std::wstring> elements;
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    const LocationSummary& summary = summaries[static_cast<std::size_t>(location)];
    const LocationRow& row = LocationRowOf(location);
    elements.push_back(
        L"{\"location\":" + JsonText(row.memberName) + L",\"ordinal\":" + std::to_wstring(location) +
        L",\"family\":" + JsonText(FamilyOf(row).name) + L",\"place\":" + JsonText(LocationPlace(row)) +
        L",\"readByDefault\":" + JsonValue(IsReadByDefault(location)) + L",\"enabled\":" +
        std::to_wstring(summary.enabled) + L",\"disabled\":" + std::to_wstring(summary.disabled) +
        L",\"can\":" + JsonValue(LocationActions(row)) + L"}");
  }
  return JsonArray(elements);
}

}  // namespace

void RunLocations(const Arguments& arguments) {
  const Library library;
  const Summaries summaries = Summarize(ReadAllItems(library));
  WriteOutput(arguments.format == OutputFormat::kJson ? AsJson(summaries) : AsTable(summaries));
}

}  // namespace smh
