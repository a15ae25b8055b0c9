// Three hosts list while eight other programs write, delete, retype and rename; whenever these stand still,
// the list of every host becomes that of a program that has just been started, which is what stands there.
// Nothing grows. SMH_SOAK_SECONDS says for how long.
#include "tests/core/boundary_client.h"
#include "tests/proofs/soak_writers.h"
#include "tests/support/child_process.h"
#include "tests/support/file_fixture.h"
#include "tests/support/process_counts.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/startup_folders.h"
#include "tests/support/test_main.h"
#include "tests/support/waiting.h"

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <map>
#include <sstream>
#include <stdexcept>

namespace smh::test {
namespace {

namespace fs = std::filesystem;

constexpr int kCommonFolder = 2;
constexpr int kHosts = 3;
constexpr DWORD kRefreshInterval = 2'000;
// A few polls, on a busy machine.
constexpr DWORD kSettleTime = 20'000;

std::wstring Property(const RawItem& item, std::int32_t index) {
  VARIANT text = {};
  OutVariant value(item, index);
  if (FAILED(VariantChangeTypeEx(&text, value.Put(), LOCALE_INVARIANT, 0, VT_BSTR))) return L"?";
  std::wstring result(text.bstrVal, SysStringLen(text.bstrVal));
  VariantClear(&text);
  return result;
}

std::wstring LineOf(const RawItem& item) {
  constexpr std::int32_t kProperties = 27;
  constexpr std::int32_t kLastAccess = 23;
  constexpr std::int32_t kFacts = 10;
  const RawFacts facts(item);
  const auto fact = [&](std::int32_t index) {
    OutVariant value;
    facts.GetFact(index, value.Put());
    return value.Type() == VT_BSTR ? value.Text() : std::wstring(L"-");
  };
  const int location = static_cast<int>(item.GetLocation());
  const bool isFile = location <= kCommonFolder;
  const bool isRun = location == kUserRun || location == kCommonRun;
  const REGSAM view = item.Fact(5) == L"64" ? KEY_WOW64_64KEY : 0;
  std::wstring line =
      SoakLine(location, view, isFile ? item.Name() : fact(6), fact(7), isRun ? Property(item, 4) : L"");
  line += L'\t' + item.Name();
  for (std::int32_t i = 0; i < kProperties; ++i) {
    if (i != kLastAccess) line += L'\t' + Property(item, i);
  }
  for (std::int32_t i = 0; i < kFacts; ++i) line += L'\t' + item.Fact(i);
  return line;
}

// The log keeps its text in blocks of this size, up to a limit that no soak reaches.
constexpr std::size_t kLogBlock = 8'000 * sizeof(wchar_t) + sizeof(std::size_t);

// What a process lists and holds at one moment.
struct Shown {
  bool allLocations = false;
  int handles = 0;
  int heapBytes = 0;
  // A line each, sorted.
  std::vector<std::wstring> entries;
};

// Written beside its place first: others never see half of it.
void Publish(const std::wstring& file, const RawCollection& items) {
  const int handles = HandleCount();
  const std::size_t heapBytes = HeapBytes(kLogBlock);
  std::wostringstream text;
  items.Lock();
  text << items.GetShowAllLocations() << L' ' << handles << L' ' << heapBytes << L'\n';
  for (std::int32_t i = 0; i < items.GetCount(); ++i) text << LineOf(items.Item(i)) << L'\n';
  items.Unlock();
  const std::wstring units = text.str();
  WriteFileBytes(file + L".new",
                 {reinterpret_cast<const char*>(units.data()), units.size() * sizeof(wchar_t)});
  MoveFileW((file + L".new").c_str(), file.c_str());
}

Shown Read(const std::wstring& file) {
  const std::string bytes = ReadFileBytes(file);
  std::wstring units(bytes.size() / sizeof(wchar_t), L'\0');
  bytes.copy(reinterpret_cast<char*>(units.data()), bytes.size());
  std::wistringstream lines(units);
  Shown shown;
  std::wstring line;
  std::getline(lines, line);
  std::wistringstream(line) >> shown.allLocations >> shown.handles >> shown.heapBytes;
  while (std::getline(lines, line)) shown.entries.push_back(line);
  std::ranges::sort(shown.entries);
  return shown;
}

// What is published next.
Shown Take(const std::wstring& file) {
  DeleteFileW(file.c_str());
  Shown shown;
  const auto isThere = [&] {
    try {
      shown = Read(file);
      return true;
    } catch (const std::runtime_error&) {
      return false;
    }
  };
  if (!WaitUntil(isThere, 60'000)) throw std::runtime_error("a host shows nothing");
  return shown;
}

// While it is busy a host switches all locations on or off and refreshes; at rest it leaves all to its
// watches.
SMH_CHILD(SoakHost) {
  const SoakSignals signals(arguments[0]);
  const LoadedLibrary library;
  const RawManager manager = library.Manager();
  const RawCollection items = manager.Items();
  for (ULONGLONG next = 0; !signals.IsOver(); Sleep(50)) {
    const bool isBusy = signals.IsBusy();
    if (GetTickCount64() >= next && (isBusy || items.GetReadState() == 2)) {
      if (isBusy) items.SetShowAllLocations(items.GetShowAllLocations() == 0 ? 1 : 0);
      items.Refresh();
      next = GetTickCount64() + kRefreshInterval;
    }
    const bool isAsked = GetFileAttributesW(arguments[1].c_str()) == INVALID_FILE_ATTRIBUTES;
    if (!isBusy && isAsked && items.GetReadState() == 2) Publish(arguments[1], items);
  }
  return items.Stop() == S_OK ? 0 : 1;
}

SMH_CHILD(SoakList) {
  const LoadedLibrary library;
  const RawManager manager = library.Manager();
  const RawCollection items = manager.Items();
  items.SetShowAllLocations(arguments[1] == L"1" ? 1 : 0);
  items.Refresh();
  if (!WaitUntil([&] { return items.GetReadState() == 2; }, 60'000)) return 1;
  Publish(arguments[0], items);
  return 0;
}

std::string Difference(const std::vector<std::wstring>& lines, const std::vector<std::wstring>& expected) {
  std::wstring text;
  std::vector<std::wstring> more;
  std::ranges::set_difference(lines, expected, std::back_inserter(more));
  for (const std::wstring& line : more) text += L"+ " + line + L'\n';
  more.clear();
  std::ranges::set_difference(expected, lines, std::back_inserter(more));
  for (const std::wstring& line : more) text += L"- " + line + L'\n';
  return fs::path(text).string();
}

class Soak : public testing::Test {
 protected:
  Soak() {
    MakeSoakPlaces();
    for (int i = 0; i < kSoakWriters; ++i) Start(L"SoakWriter", std::to_wstring(i));
    for (int i = 0; i < kHosts; ++i) Start(L"SoakHost", HostFile(i));
  }
  ~Soak() override {
    signals_.SetOver();
    for (ChildProcess& process : processes_) {
      const ChildResult result = process.Finish();
      EXPECT_EQ(result.exitCode, 0u) << result.output;
      EXPECT_FALSE(result.timedOut);
    }
  }

  std::wstring HostFile(int host) const { return folder_.File(L"host" + std::to_wstring(host)); }

  // All lists agree with what stands there.
  void LookAtHosts() {
    const Shown fresh[] = {FreshList(false), FreshList(true)};
    for (const bool all : {false, true}) {
      EXPECT_EQ(Difference(PlacesOf(fresh[all]), StandingEntries(all)), "") << "fresh, round " << rounds_;
    }
    for (int host = 0; host < kHosts; ++host) {
      Shown shown;
      const ULONGLONG begin = GetTickCount64();
      WaitUntil(
          [&] {
            shown = Take(HostFile(host));
            return shown.entries == fresh[shown.allLocations].entries;
          },
          kSettleTime);
      longest_ = std::max(longest_, GetTickCount64() - begin);
      EXPECT_EQ(Difference(shown.entries, fresh[shown.allLocations].entries), "")
          << "host " << host << ", round " << rounds_;
      std::printf("host %d%s: %d handles, heap %d\n", host, shown.allLocations ? ", all" : "", shown.handles,
                  shown.heapBytes);
      history_[{host, shown.allLocations}].push_back(std::move(shown));
    }
    std::printf("quiet point %d: %zu entries, %zu of all locations\n", rounds_, fresh[0].entries.size(),
                fresh[1].entries.size());
    std::fflush(stdout);
    ++rounds_;
  }

  // In the last third no host holds more than it had to in the first.
  void ExpectFlat() const {
    // The five of the program for icons come and go.
    constexpr int kMoreHandles = 6;
    constexpr int kMoreBytes = 128 << 10;
    for (const auto& [key, looks] : history_) {
      const auto third = static_cast<std::ptrdiff_t>(looks.size() / 3);
      if (third < 3) continue;
      const auto least = [&](auto begin, int Shown::*what) {
        return std::ranges::min(std::ranges::subrange(begin, begin + third), {}, what).*what;
      };
      for (const auto& [what, more] :
           {std::pair{&Shown::handles, kMoreHandles}, {&Shown::heapBytes, kMoreBytes}}) {
        const int first = least(looks.begin(), what);
        const int last = least(looks.end() - third, what);
        std::printf("host %d%s, %zu looks: %s %d, then %d\n", key.first, key.second ? ", all" : "",
                    looks.size(), what == &Shown::handles ? "handles" : "heap", first, last);
        EXPECT_LE(last, first + more);
      }
    }
  }

  const SoakSignals& Signals() const { return signals_; }
  int Rounds() const { return rounds_; }
  ULONGLONG Longest() const { return longest_; }

 private:
  void Start(const std::wstring& child, const std::wstring& argument) {
    processes_.emplace_back(ThisProgram(), std::vector<std::wstring>{L"--child=" + child, name_, argument});
  }

  Shown FreshList(bool allLocations) const {
    const std::wstring file = folder_.File(L"fresh");
    DeleteFileW(file.c_str());
    EXPECT_EQ(RunChild(L"SoakList", {file, allLocations ? L"1" : L"0"}).exitCode, 0u);
    return Read(file);
  }

  // Of the writers' places, without further details.
  static std::vector<std::wstring> PlacesOf(const Shown& shown) {
    constexpr int kWritten[] = {kUserFolder, kCommonFolder, kUserRun, kCommonRun, kAllMenus};
    std::vector<std::wstring> places;
    for (const std::wstring& line : shown.entries) {
      const int location = std::stoi(line);
      if (std::ranges::find(kWritten, location) != std::end(kWritten))
        places.push_back(line.substr(0, line.find(L'\t')));
    }
    std::ranges::sort(places);
    return places;
  }

  const EmptiedKeys keys_{{kRunKey, kMenusKey, kSoakClassKey}};
  const StartupPlaces user_{StartupPlaces::Whose::kUser};
  const StartupPlaces common_{StartupPlaces::Whose::kCommon};
  const TemporaryFolder folder_;
  const std::wstring name_ = L"Soak " + std::to_wstring(GetCurrentProcessId());
  const SoakSignals signals_{name_};
  std::deque<ChildProcess> processes_;
  // By number of the host, and whether it showed all locations.
  std::map<std::pair<int, bool>, std::vector<Shown>> history_;
  int rounds_ = 0;
  ULONGLONG longest_ = 0;
};

TEST_F(Soak, WheneverAllStandStillEveryListIsWhatStandsThere) {
  const char* const seconds = std::getenv("SMH_SOAK_SECONDS");
  const ULONGLONG length = seconds != nullptr ? std::stoul(seconds) * 1'000 : 1;
  const DWORD busyTime = seconds != nullptr ? 6'000 : 3'000;
  ASSERT_TRUE(Signals().Quieten());
  for (const ULONGLONG end = GetTickCount64() + length; GetTickCount64() < end;) {
    Signals().SetBusy();
    Sleep(busyTime);
    ASSERT_TRUE(Signals().Quieten());
    LookAtHosts();
  }
  std::printf("%d quiet points, the slowest list agreed after %llu ms\n", Rounds(), Longest());
  ExpectFlat();
}

}  // namespace
}  // namespace smh::test
