// Programs that write startup entries without end, all at the same time, and stand still when told to; and
// what stands there then, read without the library.
#pragma once

#include "infra/runtime/handle.h"

#include <string>
#include <vector>

namespace smh::test {

// Known to all processes of one run by its name. Writers and hosts begin at rest.
class SoakSignals {
 public:
  explicit SoakSignals(const std::wstring& name);

  bool IsBusy() const noexcept { return WaitForSingleObject(busy_.Get(), 0) == WAIT_OBJECT_0; }
  bool IsOver() const noexcept { return WaitForSingleObject(over_.Get(), 0) == WAIT_OBJECT_0; }
  void SetBusy() const noexcept { SetEvent(busy_.Get()); }
  void SetOver() const noexcept { SetEvent(over_.Get()); }
  // Every writer stands still; false when that takes longer than a minute.
  bool Quieten() const noexcept;
  // For a writer: says that it stands still, until it is busy again or over.
  void Rest() const noexcept;

 private:
  ScopedHandle busy_;
  ScopedHandle over_;
  // Counts those that stand still.
  ScopedHandle resting_;
};

// One program each: in Run keys of both roots and views, a side key, handlers of both views, and both Startup
// folders.
inline constexpr int kSoakWriters = 8;

// A class with a server, for the handlers.
inline const std::wstring kSoakClass = L"{5E1B3A60-0C5D-4F0E-9A3B-6D1C2F7E8A31}";
inline const std::wstring kSoakClassKey = L"Software\\Classes\\CLSID\\" + kSoakClass;

// Before the writers begin.
void MakeSoakPlaces();
// The entries in the writers' places as SoakLine writes them, sorted; handlers are shown on request.
std::vector<std::wstring> StandingEntries(bool allLocations);

// `value` is "-" for a key, `key` the full path of a file; a command is told of Run entries only.
std::wstring SoakLine(int location, REGSAM view, const std::wstring& key, const std::wstring& value,
                      const std::wstring& command);

}  // namespace smh::test
