#include "hosts/cli/commands/commands.h"
#include "hosts/cli/console.h"
#include "hosts/cli/table_output.h"
#include "hosts/common/client_record.h"
#include "hosts/common/json_output.h"
#include "hosts/common/text_encoding.h"

namespace smh {

namespace {

std::wstring AsTable(std::span<const ClientRecord> clients) {
  TextTable table{.header = {L"#", L"Kind", L"Name", L"Company", L"File", L"Description", L"Icon", L"Key"},
                  .rows = {},
                  .pathColumn = 4};
  for (const ClientRecord& client : clients) {
    table.rows.push_back(
        {std::to_wstring(client.index), std::wstring(ClientKindName(client.kind)), Printable(client.name),
         Printable(client.company), Printable(client.file.empty() ? client.command : client.file),
         Printable(client.description), std::to_wstring(client.imageIndex), Printable(client.keyPath)});
  }
  return table.Text(ConsoleWidth());
}

std::wstring AsJson(std::span<const ClientRecord> clients) {
  std::vector<std::wstring> elements;
  for (const ClientRecord& client : clients) {
    std::wstring& json = elements.emplace_back(L"{");
    for (const ClientField& field : ClientFields()) {
      if (json.size() > 1) json += L',';
      json += JsonText(field.key) + L':' + JsonValue(field.read(client));
    }
    json += L'}';
  }
  return JsonArray(elements);
}

}  // namespace

void RunClients(const Arguments& arguments) {
  const Library library;
  const std::vector<ClientRecord> clients = ReadClients(library, arguments.paths);
  for (const ClientRecord& client : clients) {
    if (client.kind == kFavoritePath && !client.fileFound) {
      WriteMessage(L"There is no file \"" + client.command + L"\".");
    }
  }
  WriteOutput(arguments.format == OutputFormat::kJson ? AsJson(clients) : AsTable(clients));
}

}  // namespace smh
