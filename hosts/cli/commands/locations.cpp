#include "commands/commands.h"
#include "console.h"
#include "json_output.h"
#include "location_names.h"
#include "reading.h"
#include "table_output.h"

#include <array>

namespace smh {
namespace {

struct LocationSummary {
  std::size_t enabled = 0;
  std::size_t disabled = 0;
  std::uint32_t can = 0;  // what at least one entry allows
};
using Summaries = std::array<LocationSummary, kLastLocation + 1>;

Summaries Summarize(std::span<const ItemRecord> items) {
  Summaries summaries{};
  for (const ItemRecord& item : items) {
    if (item.location < kFirstLocation || item.location > kLastLocation) continue;
    LocationSummary& summary = summaries[static_cast<std::size_t>(item.location)];
    ++(item.enabled ? summary.enabled : summary.disabled);
    summary.can |= item.can;
  }
  return summaries;
}

std::wstring AsTable(const Summaries& summaries) {
  TextTable table{.header = {L"Location", L"Read by default", L"Enabled", L"Disabled", L"Can"}, .rows = {}};
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    const LocationSummary& summary = summaries[static_cast<std::size_t>(location)];
    std::wstring can;
    for (const std::wstring_view action : ActionNames(summary.can)) {
      if (!can.empty()) can += L' ';
      can += action;
    }
    table.rows.push_back({std::wstring(LocationName(location)), IsUsualLocation(location) ? L"yes" : L"no",
                          std::to_wstring(summary.enabled), std::to_wstring(summary.disabled), can});
  }
  std::wstring text;
  for (const std::wstring& line : table.Lines(ConsoleWidth())) text += line + L"\n";
  return text;
}

std::wstring AsJson(const Summaries& summaries) {
  std::wstring json = L"[";
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    const LocationSummary& summary = summaries[static_cast<std::size_t>(location)];
    json += location == kFirstLocation ? L"\n" : L",\n";
    json += L"{\"location\":" + JsonText(LocationName(location)) + L",\"ordinal\":" +
            std::to_wstring(location) + L",\"readByDefault\":" + JsonValue(IsUsualLocation(location)) +
            L",\"enabled\":" + std::to_wstring(summary.enabled) + L",\"disabled\":" +
            std::to_wstring(summary.disabled) + L",\"can\":" + JsonValue(ActionNames(summary.can)) + L"}";
  }
  return json + L"\n]\n";
}

}  // namespace

void RunLocations(const Arguments& arguments) {
  const Library library;
  const Summaries summaries = Summarize(ReadAllItems(library));
  WriteOutput(arguments.format == OutputFormat::json ? AsJson(summaries) : AsTable(summaries));
}

}  // namespace smh
