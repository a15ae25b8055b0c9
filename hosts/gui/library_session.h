// The library as the window uses it. Everything here runs on the worker's thread, on which it is also made
// and destroyed; what it answers are copies, but for the image lists. What the library refuses raises
// HostError unless it is said otherwise.
#pragma once

#include "hosts/common/client_record.h"
#include "hosts/common/entry_look.h"
#include "hosts/common/journal.h"
#include "hosts/common/library.h"
#include "hosts/common/operations.h"
#include "hosts/gui/action_progress.h"
#include "hosts/gui/entry_rows.h"
#include "hosts/gui/undo_forecast.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace smh {

// What a look at the list found: the differences to the look before.
struct ListNews {
  std::vector<WatchEvent> events;
  std::int32_t readState = kReadStateReading;
  // The library's, valid as long as it is loaded.
  HIMAGELIST smallImages = nullptr;
  HIMAGELIST largeImages = nullptr;
};

// What became of an operation on several entries.
struct OperationReport {
  std::size_t done = 0;                // without those that were so already
  std::vector<std::wstring> failures;  // "Caption: why not"
  std::size_t left = 0;                // not looked at any more, since it was cancelled
  std::optional<EntryKey> now;         // the last entry that was made or changed, as it is listed
};

// Does to one entry what changes nothing: kActionExecute or kActionShowLocation. Null is one that has gone.
// Empty when it went well, else the end of a sentence that says why not. Dialogs are refused.
std::wstring OpenOne(IStartupItem* item, ItemAction action);

// The default programs, and the image lists of their collection.
struct ProgramNews {
  std::vector<ClientRecord> programs;
  // The library's, valid until the programs are read anew.
  HIMAGELIST smallImages = nullptr;
  HIMAGELIST largeImages = nullptr;
};

// Comma-separated with a byte order mark, for spreadsheets, or JSON.
enum class ExportFormat { kCsv, kJson };

// Owns the library, loaded for as long as it lives, and what has been seen of its list.
class LibrarySession {
 public:
  // Loads the libraries, calls `onLoaded`, and starts the library; no entry is read yet.
  explicit LibrarySession(const std::function<void()>& onLoaded = {});
  // Ends the process when a property sheet is open, since that is inside the library.
  ~LibrarySession();

  // Starts reading anew; the library's reader does it.
  void Refresh(bool allLocations);
  // Compares the list with what was seen last; none when nothing has changed. While a Refresh is under way
  // the old entries stay. Takes the list's lock for that time, and the changed marks.
  std::optional<ListNews> Look();
  // Whether the list or its details are still being read.
  bool IsReading() const { return library_.Items().GetReadState() != kReadStateComplete; }
  // Whether reading has come to another stage than the last Look told of. Costs little, as the one before.
  bool HasNewStage() const { return library_.Items().GetReadState() != tellState_; }

  // Changes every entry until it is cancelled: the failure of one is a line of the report. What was done is
  // one action for undo.
  OperationReport Change(std::span<const ItemRecord> items, Verb verb, const ChangeOrder& order,
                         ActionProgress& progress) const;
  // What becomes of undo with such a change. Changes nothing.
  UndoForecast Forecast(std::span<const ItemRecord> items, Verb verb, const ChangeOrder& order) const;
  // Adds an entry, as a change of its own.
  OperationReport Add(std::int32_t location, const std::wstring& name, const std::wstring& command,
                      ActionProgress& progress) const;
  // Executes them or shows their places, as OpenOne does, until it is cancelled. One whose command is
  // another by now is not executed.
  OperationReport Open(std::span<const ItemRecord> items, ItemAction action, ActionProgress& progress) const;
  // The locations, other than their own, that would take every one of the entries; none when one of them has
  // gone.
  LocationSet MoveTargets(std::span<const ItemRecord> items) const;
  // Opens the property sheet of the entry's file, if it is still listed. The sheet may keep its thread as
  // long as it is open, so it gets one of its own.
  void ShowFile(const ItemRecord& item) const;
  // The file that a command line starts; empty when there is none.
  std::wstring ResolveFile(const std::wstring& command) const {
    return command.empty() ? std::wstring() : library_.ResolveCommandFile(command);
  }
  // Finds the files of the entries and writes them as UTF-8. Raises HostError when the file cannot be
  // written; what stood there is replaced only by a whole file, which is written as "`file`.part" before.
  void Export(std::vector<ItemRecord> items, ExportFormat format, const std::wstring& file) const;
  // The journal of changes; valid as long as the session.
  const Journal& Changes() const noexcept { return journal_; }
  // Reads the default programs and blocks until their details are there, as ReadClients does. When it fails
  // those read before stay.
  ProgramNews ReadPrograms();
  // Valid as long as the session.
  const Library& Get() const noexcept { return library_; }

 private:
  OperationReport Run(std::span<EntryChange> changes, ActionProgress& progress) const;

  Library library_;
  Journal journal_;
  std::shared_ptr<std::atomic<int>> openSheets_ = std::make_shared<std::atomic<int>>(0);
  // The window may still draw with the images of the one before.
  ComPtr<IFavoriteItemCollection> programs_;
  ComPtr<IFavoriteItemCollection> programsBefore_;
  EntryWatch watch_{Announce::kAtOnce};
  std::int32_t tellState_ = -1;
  bool hasListed_ = false;
};

}  // namespace smh
