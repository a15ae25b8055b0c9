// The interfaces of StartupManagerHelper.dll for hosts.
//
// Load the library by full path, look up its one export `GetInstance` and ask it for IStartupManager. The
// pointer it returns carries no reference for the caller: AddRef it to keep it beyond the next call, and
// Release only what was added. Before FreeLibrary call IStartupItemCollection::Stop and release everything.
//
// Calls are stdcall; slots are numbered after IUnknown's three, that is from 3.
// - Text: boundary strings (boundary_string.h). The caller releases an out text.
// - Interfaces that come by an out argument carry one reference, which the caller releases.
// - Booleans and enumerations are 32-bit results; of a boolean argument only the low byte counts.
// - An operation without a result returns an HRESULT; one with a result returns a neutral value when it
//   fails. Either way the failure's text is in the thread's error info (GetErrorInfo: description = message,
//   source = class of the exception). Every slot clears the error info on entry.
// - Null for an out argument is E_POINTER.
// - Slots may read disk, registry and network. Those that change or start something (AddItem, Delete, Enable,
//   Disable, MoveTo, ChangeCommand, SetSwitchedOff, Execute, ShowLocation) wait for a change under way,
//   thirty seconds at most, and up to ten seconds for the journal of changes (intf_journal.h). No other slot
//   waits for a change, but for one that is made by a thread that holds Lock.
// - On a thread of a single-threaded apartment messages are dispatched while a change waits for another one,
//   and while Refresh and Stop wait for each other.
//
// What is refused, with nothing changed. The text is in the error info; for people, other words than those of
// an assertion are better. AddItem answers -1 in place of the HRESULT.
//
// | Slots                         | Reason                                       | HRESULT
// |   Text
// | IStartupItem's 11 to 18       | the entry is not listed any more             | S_FALSE
// |   the entry has gone
// | changes                       | the system refused it, and gave no error     | S_FALSE
// |   the change was refused without an error
// | changes                       | another program changes the entry, too       | ERROR_REVISION_MISMATCH
// |   changed meanwhile by another program
// | changes                       | the new place is another entry's             | ERROR_ALREADY_EXISTS
// |   another entry of that name stands there
// | changes                       | others have been changing for 30 s           | ERROR_BUSY
// |   another change is under way
// | changes                       | another process has had the journal for 10 s | ERROR_LOCK_VIOLATION
// |   the system's
// | ChangeCommand                 | the command is null or empty                 | E_INVALIDARG
// |   The command is empty.
// | AddItem, MoveTo,              | name or command are too long for the place   | ERROR_FILENAME_EXCED_RANGE
// | ChangeCommand                 |
// |   The name is too long. / The command is too long.
// | AddItem, MoveTo,              | no shortcut starts what the command starts   | ERROR_NOT_SUPPORTED
// | ChangeCommand                 |
// |   A shortcut cannot hold this command: ...
// | MoveTo                        | it is switched off, and the new place knows  | ERROR_NOT_SUPPORTED
// |                               | no such switch: there it would start         |
// |   The entry is switched off in Task Manager, and the new place has no such switch.
// | SetSwitchedOff                | kFactCanSwitch says no                       | E_UNEXPECTED
// | changes, Refresh, Stop        | the thread is inside of one already          | E_UNEXPECTED
// |   A call of this thread is under way already.
// | IStartupItem's 11 to 18       | CanDo says no                                | E_UNEXPECTED
// | AddItem                       | a text is empty, or the location takes none  | E_UNEXPECTED
// | Refresh, Stop                 | the thread holds Lock                        | E_UNEXPECTED
// | Unlock                        | the thread does not hold Lock                | E_UNEXPECTED
// |   Assertion failure (...)
#pragma once

#include "core/contracts/boundary_string.h"
#include "core/contracts/location_table.h"

#include <oaidl.h>
#include <unknwn.h>
#include <commctrl.h>

namespace smh {

// What IStartupItemCollection::GetReadState answers. It only rises between two calls of Refresh.
enum ReadState : std::int32_t {
  kReadStateReading = 0,   // the first pass over the locations is not finished
  kReadStateListed = 1,    // every taking-part location was read once
  kReadStateComplete = 2,  // every item's extended information was read as well
};

// Indexes of IStartupItem::GetProperty. A text that is not known is empty, a date 0.
enum ItemProperty : std::int32_t {
  kPropertyLocation = 0,   // VT_I4
  kPropertyEnabled = 1,    // VT_BOOL
  kPropertyFileFound = 2,  // VT_BOOL
  kPropertyCaption = 3,    // VT_BSTR, as all below without a note
  kPropertyCommand = 4,
  kPropertyDescription = 5,
  kPropertyWorkingFolder = 6,
  kPropertyLinkNumber = 7,  // VT_I4: the hot key of a shortcut item
  kPropertyProductName = 8,
  kPropertyComments = 9,
  kPropertyVersionNumber = 10,
  kPropertyInternalName = 11,
  kPropertyOriginalFilename = 12,
  kPropertyProductVersion = 13,
  kPropertyFileVersion = 14,
  kPropertyVersion = 15,  // ProductVersion, else FileVersion
  kPropertyPrivateBuild = 16,
  kPropertySpecialBuild = 17,
  kPropertyCompany = 18,  // CompanyName, else LegalCopyright
  kPropertyLegalCopyright = 19,
  kPropertyLegalTrademarks = 20,
  kPropertyFileSize = 21,        // VT_I8: bytes
  kPropertyCreationTime = 22,    // VT_DATE: local time
  kPropertyLastAccessTime = 23,  // VT_DATE
  kPropertyLastWriteTime = 24,   // VT_DATE
  kPropertyFileTypeName = 25,
  kPropertyRating = 26,  // VT_I4: 0 trusted, 1 unknown, 2 risky
};

// Indexes of IStartupItemFacts::GetFact. VT_NULL stands for what does not apply: the facts of a value or a
// key to a file of a Startup folder, those of its place to a default program.
enum ItemFact : std::int32_t {
  kFactLocation = 0,       // VT_I4: a TTypeStartupLocation
  kFactReachability = 1,   // VT_I4: a FileReachability, of the described file
  kFactDescribedFile = 2,  // VT_BSTR: whose size, times, version record, rating and icon the entry shows
  // VT_BSTR: the file that runs when the command's program only runs another one: the library that rundll32
  // is told to load, or the control panel file that this is given; the program or script of "cmd /c", the
  // script of powershell, wscript and cscript, the package of msiexec. A full path; empty for any other
  // command, when there is no such file, and when more or something else runs than one file.
  kFactServedFile = 3,
  kFactRoot = 4,  // VT_BSTR: "HKEY_LOCAL_MACHINE" or "HKEY_CURRENT_USER"
  kFactView = 5,  // VT_I4: 64 or 32, the registry view
  kFactKey = 6,   // VT_BSTR: the path below the root, without a backslash at either end
  // VT_BSTR: may hold NULs; empty for the default value. VT_NULL for an entry that is the key itself.
  kFactValueName = 7,
  // VT_BSTR: empty while enabled; kDisabledByUs; else the side key or the folder of another tool.
  kFactDisabledBy = 8,
  kFactTwin = 9,  // VT_I4: an ItemTwin
  // VT_BSTR: the command, or what an entry without one has given, that stands there for kTwinOther; VT_NULL
  // else.
  kFactTwinCommand = 10,
  // Whether Windows would start the entry, as its own switches, policies and lists say: these are read by
  // every pass and watched; an entry for which the answer changes gets its changed mark. VT_NULL for a
  // default program. docs/windows.md tells where each is read.
  kFactStarts = 11,        // VT_I4: a StartsAnswer
  kFactStartReasons = 12,  // VT_I4: StartReason flags
  // VT_DATE: when the system's switch was put off; 0 when it does not say, VT_NULL for one that is on.
  kFactSwitchedOffSince = 13,
  kFactCanSwitch = 14,  // VT_BOOL: whether SetSwitchedOff has a switch to set
  // VT_BSTR: the full path of the program that the command starts something through, as rundll32, cmd,
  // powershell, wscript, msiexec and others do; empty when the program itself is what runs. With it and
  // without kFactServedFile it cannot be told what runs.
  kFactStartedThrough = 15,
  // VT_I4: the StartsAnswer of 64-bit and of 32-bit programs by themselves, for what each reads in its own
  // registry view; VT_NULL for an entry that programs of that kind do not read.
  kFactStarts64 = 16,
  kFactStarts32 = 17,
};

// Whether Windows would start an entry. What cannot be derived is unknown.
enum StartsAnswer : std::int32_t { kStartsUnknown = 0, kStartsYes = 1, kStartsNo = 2 };

// Why Windows would not start an entry, or why that cannot be told. Later versions add bits behind these.
enum StartReason : std::int32_t {
  kReasonDisabled = 0x1,     // it lies in a side key or a folder of disabled entries
  kReasonSwitchedOff = 0x2,  // by Task Manager or Settings
  kReasonPolicy = 0x4,
  kReasonBlocked = 0x8,       // by the list of blocked extensions, or as a browser add-on
  kReasonNotApproved = 0x10,  // only approved extensions are loaded
  kReasonNotRead = 0x20,      // this Windows does not read the location
  kReasonOnlyInIEMode = 0x40,
  kReasonMissing = 0x80,       // the file
  kReasonUnreachable = 0x100,  // the file's share or drive does not answer now
  // Behind a reason that holds for one of the two alone; the entry may start through the other one. Both when
  // there are several such reasons.
  kReasonOnlyFor64 = 0x200,
  kReasonOnlyFor32 = 0x400,
};

// Whether the file is there. One out of reach may be: its share or network drive did not answer.
enum FileReachability : std::int32_t { kFileMissing = 0, kFileFound = 1, kFileUnreachable = 2 };

// What the 32-bit view of a 64-bit Windows holds at the place of an entry of the 64-bit view, and what is
// listed with that alone.
enum ItemTwin : std::int32_t {
  kTwinNone = 0,   // nothing, or an entry of its own; always on a 32-bit Windows
  kTwinSame = 1,   // the same text: both are changed together
  kTwinOther = 2,  // a value of that name with another text, which is left alone
};

// Stands for the side key or the folder that this system moves to what it disables, whoever moved it there.
inline constexpr wchar_t kDisabledByUs[] = L"own";

// What IFavoriteItem::GetKind answers.
enum FavoriteKind : std::int32_t {
  kFavoritePath = 0,  // added by IFavoriteItemCollection::AddPath
  kFavoriteMail = 1,
  kFavoriteMedia = 2,
  kFavoriteBrowser = 3,
  kFavoriteContacts = 4,
  kFavoriteCalendar = 5,
  kFavoriteInternetCall = 6,
  kFavoriteMessaging = 7,
};

// Indexes of IFavoriteItem::GetProperty besides those of ItemProperty.
enum FavoriteProperty : std::int32_t {
  kFavoritePropertyKind = 0,      // VT_I4
  kFavoritePropertyKeyPath = 27,  // VT_BSTR: below HKEY_LOCAL_MACHINE; empty for an added path
};

// Actions of IStartupItem::CanDo. A change needs a location that allows it, an account that may write there,
// and an entry in the state for it.
enum ItemAction : std::int32_t {
  kActionDelete = 0,
  kActionEnable = 1,
  kActionDisable = 2,
  kActionMove = 3,
  kActionChangeCommand = 4,
  kActionExecute = 5,
  kActionShowFileDetails = 6,
  kActionShowLocation = 7,
};

// One start-up entry. The wrapper does not keep its entry alive: when the entry leaves the list, or there
// never was one, every query answers the neutral value given here, and every operation does nothing and
// answers S_FALSE. Any thread may use it.
struct IStartupItem : IUnknown {
  static constexpr GUID iid = {0x9AE83B93, 0xCF58, 0x474B, {0x9D, 0x7A, 0xDE, 0xBC, 0x2F, 0x00, 0x02, 0x05}};

  // 3: position in the list; -1.
  virtual std::int32_t STDMETHODCALLTYPE GetIndex() = 0;
  // 4: a TTypeStartupLocation; sulNone.
  virtual std::int32_t STDMETHODCALLTYPE GetLocation() = 0;
  // 5: identity within the location: the full value path or the file path; empty.
  virtual HRESULT STDMETHODCALLTYPE GetName(BoundaryText* name) = 0;
  // 6: takes and clears the changed mark, and says whether it was set; 1.
  virtual BOOL STDMETHODCALLTYPE ReadChanged() = 0;
  // 7: index in both image lists of the collection; -1.
  virtual std::int32_t STDMETHODCALLTYPE GetImageIndex() = 0;
  // 8: an ItemProperty; VT_NULL for an unknown index. The variant is overwritten; the caller clears it
  // afterwards.
  virtual HRESULT STDMETHODCALLTYPE GetProperty(std::int32_t index, VARIANT* value) = 0;
  // 9: an ItemAction; 0.
  virtual BOOL STDMETHODCALLTYPE CanDo(std::int32_t action) = 0;
  // 10: whether the location would take the entry, as its own always does; 0.
  virtual BOOL STDMETHODCALLTYPE CanMoveTo(std::int32_t location) = 0;
  // 11-15: changes, recorded for undo unless the settings say otherwise. S_OK: what was written was read back
  // and is there, or there was nothing to do (the entry's own location, the command that it has). S_FALSE:
  // refused without an error. Any other failure has been taken back: the entry stands where it stood. Ask
  // CanDo first. A thread that holds the collection's Lock gives it up while it waits for another change. The
  // wrapper stays with its entry through Enable, Disable and, of a shortcut, ChangeCommand; else look for the
  // entry anew.
  virtual HRESULT STDMETHODCALLTYPE Delete() = 0;
  virtual HRESULT STDMETHODCALLTYPE Enable() = 0;
  virtual HRESULT STDMETHODCALLTYPE Disable() = 0;
  virtual HRESULT STDMETHODCALLTYPE MoveTo(std::int32_t location) = 0;
  virtual HRESULT STDMETHODCALLTYPE ChangeCommand(const wchar_t* command) = 0;
  // 16: starts the command; a failure is shown in a message box, then returned.
  virtual HRESULT STDMETHODCALLTYPE Execute(HWND window) = 0;
  // 17: the property sheet of the entry's file. May keep the thread as long as the sheet is open; the thread
  // needs no COM.
  virtual HRESULT STDMETHODCALLTYPE ShowFileDetails(HWND window) = 0;
  // 18: a registry entry in the registry editor, which is closed and started anew; a file in the file
  // browser. May take a few seconds. An editor that cannot be started is shown in a message box and is no
  // failure.
  virtual HRESULT STDMETHODCALLTYPE ShowLocation() = 0;
};

// Further facts of a start-up entry or a default program: QueryInterface of IStartupItem and IFavoriteItem
// answers it. Later versions add indexes and put slots behind these. Any thread may use it; slot 3 touches no
// disk and no registry.
struct IStartupItemFacts : IUnknown {
  static constexpr GUID iid = {0xE7FF0A82, 0x5825, 0x4742, {0x9F, 0x44, 0x86, 0x3F, 0x32, 0xDD, 0x50, 0x00}};

  // 3: an ItemFact; VT_NULL for an index that this version does not know, and without an entry. The variant
  // is overwritten; the caller clears it afterwards.
  virtual HRESULT STDMETHODCALLTYPE GetFact(std::int32_t index, VARIANT* value) = 0;
  // 4: puts the system's own switch of a start-up entry off or on, as Task Manager does. A change like those
  // of IStartupItem: recorded, read back, and refused when another program changes the switch meanwhile. Ask
  // kFactCanSwitch first. Only the low bit and the time of what stands there are changed. The entry itself
  // stays where it is. The other changes take the switch along: what is moved or renamed is off there exactly
  // when it was; what is added is on, whatever an entry of that name has left behind; what is deleted leaves
  // none. Enable and Disable leave it as it is. For a default program E_UNEXPECTED.
  virtual HRESULT STDMETHODCALLTYPE SetSwitchedOff(BOOL off) = 0;
};

// All start-up entries of all locations read so far. Any thread may use it.
struct IStartupItemCollection : IUnknown {
  static constexpr GUID iid = {0x6F4C2018, 0x3E75, 0x411A, {0xB5, 0x0D, 0x7B, 0xB9, 0x61, 0xCC, 0x02, 0x03}};

  // 3: of the moment; Lock keeps it.
  virtual std::int32_t STDMETHODCALLTYPE GetCount() = 0;
  // 4: a new wrapper; for an index outside the list one without entry.
  virtual HRESULT STDMETHODCALLTYPE GetItem(std::int32_t index, IStartupItem** item) = 0;
  // 5, 6: 16x16 and 32x32, owned by the library and valid as long as it is loaded. Images 0 to 2 are the
  // ratings, 3 the unknown file; the reader appends, and an index stays what it is.
  virtual HIMAGELIST STDMETHODCALLTYPE GetSmallImageList() = 0;
  virtual HIMAGELIST STDMETHODCALLTYPE GetLargeImageList() = 0;
  // 7: a ReadState.
  virtual std::int32_t STDMETHODCALLTYPE GetReadState() = 0;
  // 8, 9: all locations instead of those read by default; takes effect at the next Refresh.
  virtual BOOL STDMETHODCALLTYPE GetShowAllLocations() = 0;
  virtual HRESULT STDMETHODCALLTYPE SetShowAllLocations(BOOL show) = 0;
  // 10, 11: start reading anew, after a reading under way has been stopped; stop and wait. The list stays as
  // it is meanwhile. Refused with E_UNEXPECTED by a thread that holds Lock.
  virtual HRESULT STDMETHODCALLTYPE Refresh() = 0;
  virtual HRESULT STDMETHODCALLTYPE Stop() = 0;
  // 12, 13: hold the list still for a walk: the reader and the changes of other threads wait meanwhile. Only
  // a change by the same thread lets others in between. Recursive; Unlock by a thread that does not hold it
  // is E_UNEXPECTED.
  virtual HRESULT STDMETHODCALLTYPE Lock() = 0;
  virtual HRESULT STDMETHODCALLTYPE Unlock() = 0;
  // 14: the new entry's position, when it was read back and is there; -1 when it fails or is refused. A
  // change like those of IStartupItem. `location` is a TTypeStartupLocation, `name` the value's or, without
  // extension, the shortcut's. A value that has the name already stays as it is and its position is the
  // answer; a file that has it is a failure.
  virtual std::int32_t STDMETHODCALLTYPE AddItem(std::int32_t location, const wchar_t* name,
                                                 const wchar_t* command) = 0;
  // 15, 16: whether the shell is asked for the icons of files, of entries and of default programs; 1 at
  // first. It is asked in a process of its own (startupicons.exe beside the library; without it there are no
  // icons). A host that shows text only switches it off before it reads. What has been read keeps its icon.
  virtual BOOL STDMETHODCALLTYPE GetShowIcons() = 0;
  virtual HRESULT STDMETHODCALLTYPE SetShowIcons(BOOL show) = 0;
};

// The titles of backup checkpoints; "%s" receives the entry's name. All objects share the module's texts. A
// change holds for every later checkpoint until the library is freed. Any thread may use it.
struct IStartupManagerStrings : IUnknown {
  static constexpr GUID iid = {0xE8C7F189, 0x6EBA, 0x407B, {0xA5, 0x5E, 0x97, 0xC8, 0x24, 0xEC, 0x02, 0x02}};

  // 3-14: a copy for the caller, which it releases; and a text that is copied.
  virtual HRESULT STDMETHODCALLTYPE GetAddingText(BoundaryText* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetAddingText(const wchar_t* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetMovingText(BoundaryText* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetMovingText(const wchar_t* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDeletingText(BoundaryText* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetDeletingText(const wchar_t* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetEnablingText(BoundaryText* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetEnablingText(const wchar_t* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDisablingText(BoundaryText* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetDisablingText(const wchar_t* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetChangingText(BoundaryText* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetChangingText(const wchar_t* text) = 0;
};

// One default program. The wrapper keeps its collection, and with it the entry, alive. Any thread may use it.
struct IFavoriteItem : IUnknown {
  static constexpr GUID iid = {0x9AE83B93, 0xCF58, 0x474B, {0x9D, 0x7A, 0xDE, 0xBC, 0x2F, 0x00, 0x02, 0x06}};

  // 3: position in the list; it never changes.
  virtual std::int32_t STDMETHODCALLTYPE GetIndex() = 0;
  // 4: a FavoriteKind.
  virtual std::int32_t STDMETHODCALLTYPE GetKind() = 0;
  // 5: the display name.
  virtual HRESULT STDMETHODCALLTYPE GetName(BoundaryText* name) = 0;
  // 6: takes and clears the changed mark, which is set once when the entry's details have been loaded, and
  // says whether it was set.
  virtual BOOL STDMETHODCALLTYPE ReadChanged() = 0;
  // 7: index in the collection's own image lists; 0 is the unknown file.
  virtual std::int32_t STDMETHODCALLTYPE GetImageIndex() = 0;
  // 8: by a FavoriteProperty or an ItemProperty; VT_NULL for an unknown index and for those that have no
  // meaning here: enabled, link number, rating. The caller clears the variant.
  virtual HRESULT STDMETHODCALLTYPE GetProperty(std::int32_t index, VARIANT* value) = 0;
};

// The system's default programs. Each collection reads them once, on a thread of its own, from the moment it
// is made; entries are only ever appended. Releasing the last reference, the wrappers' included, ends that
// thread and waits for it: any thread may do that at any time, but not while another one holds the list's
// lock.
struct IFavoriteItemCollection : IUnknown {
  static constexpr GUID iid = {0x6F4C2018, 0x3E75, 0x411A, {0xB5, 0x0D, 0x7B, 0xB9, 0x61, 0xCC, 0x02, 0x04}};

  // 3: it never shrinks.
  virtual std::int32_t STDMETHODCALLTYPE GetCount() = 0;
  // 4: a new wrapper. For an index outside the list S_FALSE, and `item` stays as it is.
  virtual HRESULT STDMETHODCALLTYPE GetItem(std::int32_t index, IFavoriteItem** item) = 0;
  // 5, 6: 16x16 and 32x32; borrowed, valid while the collection lives.
  virtual HIMAGELIST STDMETHODCALLTYPE GetSmallImageList() = 0;
  virtual HIMAGELIST STDMETHODCALLTYPE GetLargeImageList() = 0;
  // 7: appends an entry for a file; its details are loaded soon after. The path must not be empty.
  virtual HRESULT STDMETHODCALLTYPE AddPath(const wchar_t* path) = 0;
  // 8, 9: no entry is added and none gets its details in between. Recursive; only the thread that locked may
  // unlock.
  virtual HRESULT STDMETHODCALLTYPE Lock() = 0;
  virtual HRESULT STDMETHODCALLTYPE Unlock() = 0;
  // 10: a ReadState: created, every kind read, details loaded. It stays complete when a path is added.
  virtual std::int32_t STDMETHODCALLTYPE GetReadState() = 0;
};

// What GetInstance hands out. The first call of GetStartupItems is expected from one thread.
struct IStartupManager : IUnknown {
  static constexpr wchar_t kId[] = L"{E8C7F189-6EBA-407B-A55E-97C824EC0201}";
  static constexpr GUID iid = {0xE8C7F189, 0x6EBA, 0x407B, {0xA5, 0x5E, 0x97, 0xC8, 0x24, 0xEC, 0x02, 0x01}};

  // 3: always the same collection. Hosts ask for it at least once before they free the library.
  virtual HRESULT STDMETHODCALLTYPE GetStartupItems(IStartupItemCollection** items) = 0;
  // 4: a new collection on every call, which begins to read at once.
  virtual HRESULT STDMETHODCALLTYPE GetFavoriteItems(IFavoriteItemCollection** items) = 0;
  // 5: a new object on every call.
  virtual HRESULT STDMETHODCALLTYPE GetStrings(IStartupManagerStrings** strings) = 0;
  // 6: the file that a command line or shortcut starts, by its full path where it is found; it need not
  // exist. A shortcut that cannot be read, or has no target, is its own answer.
  virtual HRESULT STDMETHODCALLTYPE ResolveCommandFile(const wchar_t* command, BoundaryText* file) = 0;
};

// The export. `iid` is compared as text, ignoring ASCII case; null or any other identifier gives null.
using GetInstanceFunction = IUnknown*(STDMETHODCALLTYPE*)(const wchar_t* iid, DWORD reserved);

}  // namespace smh
