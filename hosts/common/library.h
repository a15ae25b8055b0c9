// StartupManagerHelper.dll and its sibling libraries, loaded at run time from the folder of this program.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "infra/runtime/com_ptr.h"
#include "infra/runtime/handle.h"

#include <functional>
#include <string>
#include <vector>

namespace smh {

// Loads a library by its full path from the folder of this program; the result holds it. From any thread.
// Raises HostError.
ScopedModule LoadFromOwnFolder(const std::wstring& name);

// What GetInstance of the library, which messages call `name`, hands out for `id`: uncounted, and valid for
// as long as the library is loaded. Raises HostError when that is nothing.
IUnknown* AskInstance(HMODULE library, const std::wstring& name, const wchar_t* id);
// The service of a sibling library that is loaded as `library`; otherwise as above.
template <typename Interface>
Interface& AskService(HMODULE library) {
  return static_cast<Interface&>(*AskInstance(library, Interface::kLibrary, Interface::kId));
}

// Whether a host shows icons, which cost a look of the shell into each file.
enum class IconUse { kNone, kShown };

// The library for as long as the object lives. One object at a time, used by one thread.
class Library {
 public:
  // Loads the siblings that the library cannot do without, so that a missing one is a failure like others,
  // then the library, and calls `onLoaded`; then starts the library, which writes down what the Run keys hold
  // and takes its time for that. Raises HostError.
  explicit Library(IconUse icons = IconUse::kNone, const std::function<void()>& onLoaded = {});
  // Stops the reader before the library is freed.
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  // Borrowed, for as long as this object lives.
  IStartupManager& Manager() const noexcept { return *manager_; }
  IStartupItemCollection& Items() const noexcept { return *items_; }
  // The entry at that position; only a ListLock keeps it there. Raises HostError.
  ComPtr<IStartupItem> ItemAt(std::int32_t index) const;
  // The file that a command line starts; empty when there is none or it cannot be found out.
  std::wstring ResolveCommandFile(const std::wstring& command) const;

 private:
  std::vector<ScopedModule> siblings_;
  ScopedModule module_;
  ComPtr<IStartupManager> manager_;
  ComPtr<IStartupItemCollection> items_;
};

// Holds the list of items still, for the thread that made it, which destroys it too. It is the first lock of
// the library's that a host may hold.
class ListLock {
 public:
  // Raises HostError.
  explicit ListLock(const Library& library);
  ~ListLock();
  ListLock(const ListLock&) = delete;
  ListLock& operator=(const ListLock&) = delete;

 private:
  IStartupItemCollection& items_;
};

}  // namespace smh
