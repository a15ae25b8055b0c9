// Many changes in one command: the command line's process against the same recorded writes, readings and
// deletions bare, as one action of the backup service.

#include "benchmarks/bench.h"
#include "benchmarks/sample_entries.h"
#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/intf_journal.h"
#include "core/contracts/intf_safeguard.h"
#include "infra/registry/registry_values.h"
#include "infra/runtime/com_ptr.h"
#include "infra/runtime/import_function.h"
#include "tests/support/child_process.h"
#include "tests/support/file_fixture.h"

#include <filesystem>
#include <stdexcept>

namespace smh::bench {
namespace {

constexpr int kPrograms = 40;
constexpr int kEntries = 1'048;
constexpr int kChanged = 1'000;
constexpr DWORD kTimeLimitMs = 300'000;

const HKEY kRoots[] = {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE};

std::wstring Beside(const wchar_t* name) {
  wchar_t own[MAX_PATH];
  GetModuleFileNameW(nullptr, own, MAX_PATH);
  return (std::filesystem::path(own).parent_path() / name).wstring();
}

std::size_t DisabledCount() {
  std::size_t count = 0;
  for (const HKEY root : kRoots) {
    count += RegistryValueNames(test::MakeKey(root, test::kRunSide, test::OwnView()).Get()).size();
  }
  return count;
}

// All entries stand in their Run keys.
void PutBack(RunValues& values) {
  for (const HKEY root : kRoots)
    RegDeleteTreeW(test::MakeKey(root, test::kRunSide, test::OwnView()).Get(), nullptr);
  values.Fill(0);
  values.Fill(kEntries);
}

// The backup service, as the library has it.
template <typename Service>
Service& Guard() {
  static const HMODULE module = LoadLibraryW(Beside(Service::kLibrary).c_str());
  return *static_cast<Service*>(ImportFunction<GetInstanceFunction>(module, "GetInstance")(Service::kId, 0));
}

void Check(LSTATUS status) {
  if (status != ERROR_SUCCESS) throw std::runtime_error("a recorded change failed");
}

void DisableBare(IRegAccess& access, HKEY run, HKEY side, int index) {
  const std::wstring name = EntryName(index);
  const std::optional<RegistryData> data = QueryRegistryValue(run, name);
  Check(Guard<ISafeguard>().BeginCheckpoint((L"Disabling " + name).c_str()));
  Check(access.SetValue(side, name.c_str(), static_cast<DWORD>(data->bytes.size()), data->bytes.data(),
                        data->type, 0));
  if (QueryRegistryValue(side, name) != data) Check(ERROR_WRITE_FAULT);
  Check(access.DeleteValue(run, name.c_str()));
  if (QueryRegistryValue(run, name)) Check(ERROR_WRITE_FAULT);
  Check(Guard<ISafeguard>().EndCheckpoint());
}

void DisableAllBare() {
  ComPtr<IRegAccess> access;
  Guard<ISafeguard>().GetRegAccess(access.Put());
  HKEY runs[2] = {};
  HKEY sides[2] = {};
  Guard<IJournal>().BeginAction(L"Disabling 1,000 entries");
  for (std::size_t i = 0; i < 2; ++i) {
    const REGSAM rights = test::OwnView() | KEY_READ | KEY_WRITE;
    Check(access->CreateKey(kRoots[i], test::kRunSide.c_str(), nullptr, &sides[i], 0, rights, 0, 0, 0));
    Check(access->OpenKey(kRoots[i], test::kRunKey.c_str(), &runs[i], rights, 0));
  }
  for (int i = 0; i < kChanged; ++i) DisableBare(*access.Get(), runs[i % 2], sides[i % 2], i);
  for (std::size_t i = 0; i < 2; ++i) {
    access->CloseKey(runs[i]);
    access->CloseKey(sides[i]);
  }
  std::uint32_t id = 0;
  Guard<IJournal>().EndAction(&id);
}

TEST_CASE("Bulk") {
  const Programs programs(kPrograms);
  RunValues values(programs);
  std::string names;
  for (int i = 0; i < kChanged; ++i) names += "Entry " + std::to_string(100'000 + i) + "\r\n";
  const test::TemporaryFolder folder;
  const std::wstring list = folder.Write(L"names.txt", names);
  const auto measured = [&](const auto& change) {
    PutBack(values);
    const double time = Microseconds(change);
    REQUIRE(DisabledCount() == kChanged);
    return time;
  };
  const auto command = [&] {
    test::ChildProcess process(Beside(L"startupctl.exe"),
                               {L"disable", L"--from", list, L"--yes", L"--quiet"});
    REQUIRE(process.Finish(kTimeLimitMs).exitCode == 0);
  };
  const Pair times = Alternate(
      3, [&] { return measured(command); }, [&] { return measured(DisableAllBare); });
  AddRow("1000 of 1048 entries disabled in one command", "us", times.ours, times.reference, 2);
}

}  // namespace
}  // namespace smh::bench
