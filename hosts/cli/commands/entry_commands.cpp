#include "hosts/cli/commands/entry_commands.h"

#include "hosts/cli/event_output.h"
#include "hosts/cli/item_selector.h"
#include "hosts/cli/record_output.h"
#include "hosts/cli/texts/message_texts.h"
#include "hosts/cli/verification.h"
#include "hosts/common/entry_look.h"
#include "hosts/common/host_error.h"
#include "hosts/common/host_process.h"
#include "hosts/common/operations.h"
#include "hosts/common/reading.h"
#include "hosts/common/text_encoding.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/ascii_text.h"
#include "infra/runtime/handle.h"

#include <algorithm>

namespace smh {

namespace {

// The entry that the one ITEM means, of all locations.
ItemRecord SelectOneItem(const Library& library, const Arguments& arguments) {
  return SelectItem(ReadAllItems(library), arguments.items.front(), arguments.Location());
}

// Whether the columns that were asked for want the files verified.
bool TellTrust(const std::vector<std::wstring>& columns) {
  constexpr std::wstring_view kKeys[] = {L"trust", L"signature", L"signer", L"sha256"};
  return std::ranges::any_of(columns, [&](const std::wstring& column) {
    return std::ranges::any_of(kKeys, [&](std::wstring_view key) { return SameAsciiText(key, column); });
  });
}

}  // namespace

void RunList(const Arguments& arguments) {
  const std::vector<ItemField> fields = SelectFields(ItemFields(), arguments.columns);
  const Library library;
  const Selector selector = arguments.Selection();
  const ReadState state = ReadToEnd(library, selector.Scope());
  std::vector<ItemRecord> all = TakeSnapshot(library);
  // What is matched with may be in any column.
  if (!selector.filter.match.empty()) ResolveFiles(library, all);
  std::vector<ItemRecord> items;
  for (const std::size_t at : SelectItems(all, selector).positions) items.push_back(std::move(all[at]));
  std::ranges::sort(items, {}, &ItemRecord::index);
  if (selector.filter.match.empty()) ResolveFiles(library, items);
  if (arguments.verify || TellTrust(arguments.columns)) VerifyItems(items);
  WriteRecords<ItemRecord>(arguments, fields, items,
                           [&](const TableStyle& style) { return ItemTable(items, style); });
  RequireComplete(state);
}

void RunShow(const Arguments& arguments) {
  const std::vector<ItemField> fields = SelectFields(ItemFields(), arguments.columns);
  const Library library;
  ItemRecord item = SelectOneItem(library, arguments);
  ResolveFiles(library, {&item, 1});
  VerifyItems({&item, 1});
  const bool isJson = arguments.format == OutputFormat::kJson;
  WriteOutput(isJson ? JsonObject<ItemRecord>(fields, item) + L"\n" : ItemSheet(fields, item));
}

namespace {

constexpr DWORD kLookInterval = 200;

// Set by Ctrl+C and by closing the console; the handler runs on a thread of the system's own.
HANDLE g_stopEvent = nullptr;

BOOL WINAPI OnConsoleControl(DWORD) {
  SetEvent(g_stopEvent);
  return TRUE;
}

// Turns Ctrl+C into an event for as long as the object lives.
class StopRequest {
 public:
  StopRequest() : event_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    if (!event_) throw HostError(texts::kNoEvent);
    g_stopEvent = event_.Get();
    SetConsoleCtrlHandler(OnConsoleControl, TRUE);
  }
  ~StopRequest() { SetConsoleCtrlHandler(OnConsoleControl, FALSE); }
  StopRequest(const StopRequest&) = delete;
  StopRequest& operator=(const StopRequest&) = delete;

  // Whether the request came within that time.
  bool Wait(DWORD milliseconds) const {
    return WaitForSingleObject(event_.Get(), milliseconds) == WAIT_OBJECT_0;
  }

 private:
  ScopedHandle event_;
};

void Look(const Library& library, EntryWatch& watch, const EventPrinter& printer) {
  std::vector<WatchEvent> events;
  Look(library, [&](const auto& sightings, const auto& read) { events = watch.Update(sightings, read); });
  for (WatchEvent& event : events) printer.Print(library, std::move(event));
}

}  // namespace

void RunWatch(const Arguments& arguments) {
  const Selector selector = arguments.Selection();
  const EventPrinter printer(arguments, selector);
  const StopRequest stop;
  const Library library;
  const ReadScope scope = selector.Scope();
  RequireListed(ReadToEnd(library, scope));
  RequireUnambiguous(TakeSnapshot(library), selector);
  std::optional<EntryWatch> watch;
  Look(library, [&watch](const auto& sightings, const auto& read) { watch.emplace(sightings, read); });
  printer.Begin();
  WriteMessage(texts::kWatching.Get());
  const ULONGLONG start = GetTickCount64();
  while (!IsOutputClosed()) {
    const ULONGLONG passed = GetTickCount64() - start;
    if (arguments.seconds && passed >= *arguments.seconds * 1000ULL) {
      // The library may not have noticed yet what has happened last.
      RequireListed(ReadToEnd(library, scope));
      watch->ExpectNoMore();
      return Look(library, *watch, printer);
    }
    if (stop.Wait(kLookInterval)) return;
    Look(library, *watch, printer);
  }
}

void RunExecute(const Arguments& arguments) {
  const Library library;
  ItemRecord item = SelectOneItem(library, arguments);
  ResolveFiles(library, {&item, 1});
  const std::wstring entry = Describe(item);
  if (item.command.empty()) throw HostError(Say(texts::kExecuteNoCommand, entry));
  if (!IsFullPath(item.file) || !IsFile(item.file)) {
    throw HostError(Say(texts::kExecuteNoFile, entry, item.file.empty() ? item.command : item.file));
  }
  if (!item.Can(kActionExecute)) throw HostError(Say(texts::kExecuteNoProgram, entry, item.file));
  VerifyItems({&item, 1});
  RequireStartConsent(item, IsElevated(), arguments.yes);
  const ComPtr<IStartupItem> listed = RequireListedItem(library, item);
  {
    const DialogBlocker blocker;
    CheckDone(listed->Execute(nullptr), Say(texts::kCannotExecute, entry), LibrarySlot::kExecute);
  }
  WriteMessage(Format(texts::kStartedFile, item.file));
}

namespace {

// The system's tool may show something else, or nothing at all; with this the user can go there by hand.
void WritePlace(const ItemRecord& item) {
  auto place = ItemPlace(item);
  for (auto& [name, text] : place) text = Printable(text);
  WriteOutput(KeyValueLines(place));
}

}  // namespace

void RunLocate(const Arguments& arguments) {
  const Library library;
  const ItemRecord item = SelectOneItem(library, arguments);
  WritePlace(item);
  const ComPtr<IStartupItem> listed = RequireListedItem(library, item);
  const std::wstring entry = Describe(item);
  {
    const DialogBlocker blocker;
    CheckDone(listed->ShowLocation(), Say(texts::kCannotShowPlace, entry), LibrarySlot::kShowLocation);
  }
  // The library tells this failure in a message box only.
  if (DialogBlocker::HasRefused()) throw HostError(Say(texts::kNoRegistryEditor, entry));
}

}  // namespace smh
