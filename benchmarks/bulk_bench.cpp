// Many changes in one command: the command line's process against one that does the same bare.

#include "benchmarks/bench.h"
#include "benchmarks/sample_entries.h"
#include "infra/registry/registry_values.h"
#include "tests/support/child_process.h"
#include "tests/support/file_fixture.h"

#include <filesystem>
#include <string>

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
  const auto run = [&](const wchar_t* program, const std::vector<std::wstring>& arguments) {
    return measured([&] {
      test::ChildProcess process(Beside(program), arguments);
      REQUIRE(process.Finish(kTimeLimitMs).exitCode == 0);
    });
  };
  const Pair times = Alternate(
      3,
      [&] {
        return run(L"startupctl.exe", {L"disable", L"--from", list, L"--yes", L"--quiet"});
      },
      [&] { return run(L"bulk_floor.exe", {std::to_wstring(kChanged)}); });
  AddRow("1000 of 1048 entries disabled in one command", "us", times.ours, times.reference, 2);
}

}  // namespace
}  // namespace smh::bench
