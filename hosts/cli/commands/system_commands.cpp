#include "hosts/cli/commands/system_commands.h"

#include "core/contracts/intf_general.h"
#include "hosts/cli/record_output.h"
#include "hosts/cli/texts/message_texts.h"
#include "hosts/cli/texts/table_texts.h"
#include "hosts/common/client_record.h"
#include "hosts/common/host_error.h"
#include "hosts/common/known_text.h"
#include "hosts/common/library.h"
#include "hosts/common/location_names.h"
#include "hosts/common/reading.h"
#include "hosts/common/text_encoding.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "sysutil/windows/uWindowTopHelper.h"

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
  TextTable table{
      .header = {texts::kLocationColumn.Get(), texts::kFamilyColumn.Get(), texts::kPlaceColumn.Get(),
                 texts::kCanColumn.Get(), texts::kEnabledColumn.Get(), texts::kDisabledColumn.Get()},
      .rows = {},
      .pathColumn = 2};
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    const LocationSummary& summary = summaries[static_cast<std::size_t>(location)];
    const LocationRow& row = LocationRowOf(location);
    table.rows.push_back({std::wstring(row.memberName), std::wstring(FamilyOf(row).name), LocationPlace(row),
                          JoinNames(LocationActions(row), L" "), std::to_wstring(summary.enabled),
                          std::to_wstring(summary.disabled)});
  }
  return table.Text(OutputStyle());
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

namespace {

std::wstring ClientTable(std::span<const ClientRecord> clients, const TableStyle& style) {
  TextTable table{
      .header = {texts::kKindColumn.Get(), texts::kDefaultColumn.Get(), texts::kNameColumnTitle.Get(),
                 texts::kCompanyColumn.Get(), texts::kFileCellColumn.Get(), texts::kDescriptionColumn.Get(),
                 texts::kKeyColumn.Get()},
      .rows = {},
      .pathColumn = 4};
  for (const ClientRecord& client : clients) {
    table.rows.push_back({Known(texts::kClientKinds, ClientKindName(client.kind)).Shown(),
                          client.isDefault ? texts::kCellYes.Get() : L"", Printable(client.name),
                          Printable(client.company),
                          Printable(client.file.empty() ? client.command : client.file),
                          Printable(client.description), Printable(client.keyPath)});
    const bool isMissing = client.reachability != kFileFound;
    table.tones.push_back(isMissing ? Tone::kWarning : Tone::kPlain);
    if (isMissing) {
      std::wstring& file = table.rows.back()[4];
      file = WithReachability(file, client.reachability);
    }
  }
  return table.Text(style);
}

}  // namespace

void RunClients(const Arguments& arguments) {
  const std::vector<ClientField> fields = SelectFields(ClientFields(), arguments.columns);
  const Library library;
  const std::vector<ClientRecord> clients = ReadClients(library, arguments.paths);
  for (const ClientRecord& client : clients) {
    if (client.kind == kFavoritePath && !client.fileFound) {
      WriteMessage(Format(texts::kNoFileAt, client.command));
    }
  }
  WriteRecords<ClientRecord>(arguments, fields, clients,
                             [&](const TableStyle& style) { return ClientTable(clients, style); });
}

void RunResolve(const Arguments& arguments) {
  const Library library;
  const std::wstring& command = arguments.items.front();
  const std::wstring file = library.ResolveCommandFile(command);
  if (file.empty()) throw HostError(Say(texts::kNamesNoFile, command));
  WriteOutput(Printable(file) + L"\n");
  if (!Exists(file)) throw HostError(texts::kNoSuchFile);
}

namespace {

std::wstring RequireText(const std::wstring& text) {
  if (text.empty()) throw HostError(texts::kNoLogFolder);
  return WithTrailingBackslash(text);
}

}  // namespace

void RunLog(const Arguments&) {
  const ScopedModule library = LoadFromOwnFolder(IHelper::kLibrary);
  auto& helper = AskService<IHelper>(library.Get());
  auto& globals = AskService<IGlobals>(library.Get());
  const auto base = TakeText([&](BoundaryText* text) { return helper.GetBaseFolder(text); });
  const auto vendor = TakeText([&](BoundaryText* text) { return globals.GetVendorName(text); });
  const auto product = TakeText([&](BoundaryText* text) { return globals.GetProductName(text); });
  const std::wstring folder = RequireText(base) + RequireText(vendor) + RequireText(product);
  WriteOutput(Printable(folder + L"Logs\\StartupManager.log") + L"\n");
}

void RunWindows(const Arguments&) {
  TextTable table{.header = {texts::kProcessColumn.Get(), texts::kFileCellColumn.Get(),
                             texts::kIconColumn.Get(), texts::kCaptionColumn.Get()},
                  .rows = {}};
  try {
    const TWindowTopCollection windows(nullptr);
    for (const TWindowTopItem& item : windows.Items()) {
      table.rows.push_back({std::to_wstring(item.ProcessId), Printable(item.FileName),
                            (item.ImageIndex >= 0 ? texts::kCellYes : texts::kCellNo).Get(),
                            Printable(item.Caption)});
    }
  } catch (const Exception& exception) {
    throw HostError(Say(texts::kCannotListWindows, exception.Message()));
  }
  WriteOutput(table.Text(OutputStyle()));
}

}  // namespace smh
