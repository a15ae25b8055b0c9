#include "tests/proofs/run_contention.h"

#include "tests/support/test_main.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <sstream>

namespace smh::test {

const std::vector<RunPlace>& RunPlaces() {
  static const std::vector<RunPlace> places = {{sulRegistryUserRun, HKEY_CURRENT_USER, kRunKey},
                                               {sulRegistryUserRun, HKEY_CURRENT_USER, kRunSide},
                                               {sulRegistryCommonRun, HKEY_LOCAL_MACHINE, kRunKey},
                                               {sulRegistryCommonRun, HKEY_LOCAL_MACHINE, kRunSide}};
  return places;
}

std::wstring CommandOf(const std::wstring& program, const std::wstring& argument) {
  return L"\"C:\\no such folder\\" + program + L".exe\" /" + argument;
}

// A line for every call: when it began and ended, where, and the text written.
SMH_CHILD(Outsider) {
  const ULONGLONG end = GetTickCount64() + std::stoul(arguments[1]);
  std::vector<ScopedKey> keys;
  for (const RunPlace& place : RunPlaces()) keys.push_back(MakeKey(place.root, place.key, OwnView()));
  std::mt19937 random(static_cast<unsigned>(Now()));
  const auto below = [&](unsigned limit) { return random() % limit; };
  std::wostringstream log;
  for (int number = 1; GetTickCount64() < end; ++number) {
    const HKEY key = keys[below(4)].Get();
    const std::wstring name = L"c" + std::to_wstring(below(kContended));
    const unsigned what = below(10);
    const RawValue value = Sz(CommandOf(name, L"outside" + std::to_wstring(number)));
    const long long begin = Now();
    if (what < 2) {
      RegDeleteValueW(key, name.c_str());
    } else {
      const DWORD type = what < 7 ? REG_SZ : what < 9 ? REG_EXPAND_SZ : REG_BINARY;
      RegSetValueExW(key, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(value.bytes.data()),
                     static_cast<DWORD>(value.bytes.size()));
    }
    log << begin << L'\t' << Now() << L'\t' << ValuePlace(key, name.c_str()) << L'\t'
        << (what < 2 ? std::wstring() : TextOf(value)) << L'\n';
    if (below(3) != 0) Sleep(below(12));
  }
  WriteFileBytes(arguments[0], std::filesystem::path(log.str()).string());
  return 0;
}

Contender::Contender(DWORD milliseconds)
    : process_(ThisProgram(), {L"--child=Outsider", log_, std::to_wstring(milliseconds)}) {}

std::vector<TracedCall> Contender::Finish() {
  EXPECT_EQ(process_.Finish().exitCode, 0u);
  std::vector<TracedCall> calls;
  std::istringstream lines(ReadFileBytes(log_));
  for (std::string line; std::getline(lines, line);) {
    std::istringstream fields(line);
    TracedCall& call = calls.emplace_back();
    fields >> call.begin >> call.end;
    fields.get();
    std::string place, written;
    std::getline(fields, place, '\t');
    std::getline(fields, written);
    call.place.assign(place.begin(), place.end());
    call.written.assign(written.begin(), written.end());
  }
  return calls;
}

}  // namespace smh::test
