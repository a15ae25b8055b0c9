#include "hosts/gui/library_session.h"

#include "hosts/common/action_scope.h"
#include "hosts/common/csv_output.h"
#include "hosts/common/host_error.h"
#include "hosts/common/host_process.h"
#include "hosts/common/item_property.h"
#include "hosts/common/json_output.h"
#include "hosts/common/operation_steps.h"
#include "hosts/common/reading.h"
#include "hosts/common/text_encoding.h"
#include "hosts/common/texts/operation_texts.h"
#include "hosts/gui/texts/action_texts.h"
#include "infra/runtime/scoped_com.h"

#include <algorithm>
#include <optional>
#include <thread>

namespace smh {

namespace {

// The wrappers of those entries, found in one walk; empty ones for entries that have gone.
std::vector<ComPtr<IStartupItem>> FindAll(const Library& library, std::span<const ItemRecord> items) {
  std::map<EntryKey, std::size_t> wanted;
  for (std::size_t i = 0; i < items.size(); ++i) wanted.emplace(KeyOf(items[i]), i);
  std::vector<ComPtr<IStartupItem>> found(items.size());
  const ListLock lock(library);
  const std::int32_t count = library.Items().GetCount();
  for (std::int32_t index = 0; index < count; ++index) {
    ComPtr<IStartupItem> item = library.ItemAt(index);
    const EntryKey key{item->GetLocation(),
                       TakeText([&](BoundaryText* name) { return item->GetName(name); })};
    if (const auto place = wanted.find(key); place != wanted.end()) found[place->second] = std::move(item);
  }
  return found;
}

bool WriteWholeFile(const std::wstring& file, const std::string& bytes) {
  const ScopedHandle handle(
      CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  return handle &&
         WriteFile(handle.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
         written == bytes.size() && FlushFileBuffers(handle.Get());
}

// Empty for one change, whose own title tells more. Without a count, since the title is written before the
// first entry, and how many follow is known at the end only.
std::wstring ActionTitleOf(std::span<const EntryChange> changes) {
  const auto count =
      std::ranges::count_if(changes, [](const EntryChange& change) { return !change.outcome; });
  if (count < 2) return {};
  return OperationOf(changes.front().verb).texts.some.In(Language::kEnglish);
}

// Beside the target, so that it can take its place at once.
void ReplaceWithFile(const std::wstring& file, const std::string& bytes) {
  const std::wstring part = file + L".part";
  if (WriteWholeFile(part, bytes) && MoveFileExW(part.c_str(), file.c_str(), MOVEFILE_REPLACE_EXISTING))
    return;
  const DWORD error = GetLastError();
  DeleteFileW(part.c_str());
  throw HostError(Format(texts::kCannotWrite, file, SystemErrorText(HRESULT_FROM_WIN32(error))));
}

}  // namespace

std::wstring OpenOne(IStartupItem* item, ItemAction action) {
  if (item == nullptr || item->GetIndex() < 0) return texts::kHasGone.Get();
  if (!item->CanDo(action)) return texts::kNotInThisState.Get();
  const DialogBlocker blocker;
  const HRESULT result = action == kActionExecute ? item->Execute(nullptr) : item->ShowLocation();
  if (result != S_OK) return LibraryErrorText(SlotOf(action), result).Shown();
  return DialogBlocker::HasRefused() ? texts::kSystemCannot.Get() : std::wstring();
}

LibrarySession::LibrarySession(const std::function<void()>& onLoaded) : library_(IconUse::kShown, onLoaded) {}

LibrarySession::~LibrarySession() {
  if (*openSheets_ > 0) TerminateProcess(GetCurrentProcess(), 0);
}

void LibrarySession::ShowFile(const ItemRecord& item) const {
  ComPtr<IStartupItem> listed = FindListedItem(library_, item.location, item.name);
  if (!listed) return;
  ++*openSheets_;
  try {
    std::thread([listed = std::move(listed), open = openSheets_]() mutable {
      {
        const ScopedCom com(COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
        listed->ShowFileDetails(nullptr);
        listed.Reset();
      }
      --*open;
    }).detach();
  } catch (...) {
    --*openSheets_;
    throw;
  }
}

void LibrarySession::Refresh(bool allLocations) {
  CheckResult(library_.Items().SetShowAllLocations(allLocations ? TRUE : FALSE),
              texts::kCannotChooseLocations.Get());
  CheckResult(library_.Items().Refresh(), texts::kCannotRead, LibrarySlot::kReading);
  tellState_ = -1;
}

std::optional<ListNews> LibrarySession::Look() {
  ListNews news;
  // Asked first: what was listed by then is seen below.
  news.readState = library_.Items().GetReadState();
  if (news.readState != kReadStateReading || !hasListed_) {
    smh::Look(library_,
              [&](const auto& sightings, const auto& read) { news.events = watch_.Update(sightings, read); });
    hasListed_ = hasListed_ || news.readState != kReadStateReading;
  }
  if (news.events.empty() && news.readState == tellState_) return std::nullopt;
  tellState_ = news.readState;
  news.smallImages = library_.Items().GetSmallImageList();
  news.largeImages = library_.Items().GetLargeImageList();
  return news;
}

ProgramNews LibrarySession::ReadPrograms() {
  ComPtr<IFavoriteItemCollection> programs;
  CheckResult(library_.Manager().GetFavoriteItems(programs.Put()), texts::kCannotReadPrograms);
  ProgramNews news;
  news.programs = ReadClients(*programs);
  news.smallImages = programs->GetSmallImageList();
  news.largeImages = programs->GetLargeImageList();
  programsBefore_ = std::move(programs_);
  programs_ = std::move(programs);
  return news;
}

OperationReport LibrarySession::Run(std::span<EntryChange> changes, ActionProgress& progress) const {
  OperationReport report;
  report.left = changes.size();
  for (EntryChange& change : changes) {
    if (progress.IsCancelled()) return report;
    change.outcome = AskFirst(library_, change);
  }
  const ActionScope action(journal_, ActionTitleOf(changes));
  EntryPlaces places;
  for (EntryChange& change : changes) {
    if (progress.IsCancelled()) break;
    const Outcome& outcome = change.outcome ? *change.outcome : MakeChange(library_, places, change);
    progress.Advance();
    --report.left;
    if (!outcome.IsGood()) {
      report.failures.push_back(Format(texts::kOfEntry, CaptionText(change.before), outcome.text));
      continue;
    }
    if (outcome.kind == OutcomeKind::kDone) ++report.done;
    if (outcome.now) report.now = KeyOf(*outcome.now);
  }
  return report;
}

OperationReport LibrarySession::Change(std::span<const ItemRecord> items, Verb verb, const ChangeOrder& order,
                                       ActionProgress& progress) const {
  std::vector<ComPtr<IStartupItem>> found = FindAll(library_, items);
  std::vector<EntryChange> changes;
  for (std::size_t i = 0; i < items.size(); ++i) {
    changes.push_back({.verb = verb, .order = order, .before = items[i], .listed = std::move(found[i])});
  }
  return Run(changes, progress);
}

UndoForecast LibrarySession::Forecast(std::span<const ItemRecord> items, Verb verb,
                                      const ChangeOrder& order) const {
  if (!UsesCheckpoints()) return {.isRecorded = false, .dropped = {}};
  std::uint64_t bytes = 0;
  for (const ItemRecord& item : items) bytes += RecordedBytes({.verb = verb, .order = order, .before = item});
  return {.dropped = journal_.WouldDrop(bytes)};
}

OperationReport LibrarySession::Add(std::int32_t location, const std::wstring& name,
                                    const std::wstring& command, ActionProgress& progress) const {
  EntryChange change{.verb = Verb::kAdd};
  change.before.location = location;
  change.before.caption = name;
  change.before.command = command;
  return Run({&change, 1}, progress);
}

OperationReport LibrarySession::Open(std::span<const ItemRecord> items, ItemAction action,
                                     ActionProgress& progress) const {
  OperationReport report;
  report.left = items.size();
  const auto found = FindAll(library_, items);
  for (std::size_t i = 0; i < items.size() && !progress.IsCancelled(); ++i) {
    // What is run is what the user has seen, and was asked about.
    const bool isOther =
        action == kActionExecute && found[i] && TextProperty(*found[i], kPropertyCommand) != items[i].command;
    const std::wstring fault =
        isOther ? std::wstring(texts::kOtherCommand.Get()) : OpenOne(found[i].Get(), action);
    progress.Advance();
    --report.left;
    if (fault.empty()) {
      ++report.done;
    } else {
      report.failures.push_back(CaptionText(items[i]) + L": " + fault);
    }
  }
  return report;
}

LocationSet LibrarySession::MoveTargets(std::span<const ItemRecord> items) const {
  LocationSet targets;
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) targets.set(location);
  for (const auto& item : FindAll(library_, items)) {
    for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
      if (targets[location] && (!item || item->GetLocation() == location || !item->CanMoveTo(location))) {
        targets.reset(location);
      }
    }
  }
  return targets;
}

void LibrarySession::Export(std::vector<ItemRecord> items, ExportFormat format,
                            const std::wstring& file) const {
  ResolveFiles(library_, items);
  // Spreadsheets know UTF-8 by its mark.
  const std::string bytes = format == ExportFormat::kJson
                                ? ToUtf8(JsonArray<ItemRecord>(ItemFields(), items))
                                : "\xEF\xBB\xBF" + ToUtf8(CsvTable<ItemRecord>(ItemFields(), items));
  ReplaceWithFile(file, bytes);
}

}  // namespace smh
