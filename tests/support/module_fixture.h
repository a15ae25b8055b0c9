// The whole module started inside a test program, with stand-ins for the services that change something.
#pragma once

#include "core/module_start.h"
#include "infra/uStatisticsLog.h"
#include "model/item_list.h"
#include "support/fake_siblings.h"
#include "support/file_fixture.h"
#include "support/recording_safeguard.h"

#include <gtest/gtest.h>

namespace smh::test {

// What a program starts; a suite of a lower layer may choose fewer steps before its first test.
inline std::span<const ModuleStep> (*stepsUnderTest)() = [] { return ModuleSteps(); };

// One per program. The services are fetched once per process, so the stand-ins live as long.
class ModuleUnderTest {
 public:
  static ModuleUnderTest& Instance() {
    static ModuleUnderTest module;
    return module;
  }

  RecordingSafeguard& Safeguard() { return *safeguard_; }
  FakeSettings& Settings() { return *settings_; }
  FakeFileRater& Rater() { return *rater_; }

 private:
  ModuleUnderTest() {
    InstallFakeSibling(L"guardkit.dll", ISafeguard::kId, safeguard_.Get());
    InstallFakeSibling(L"prefkit.dll", ISettings::kId, settings_.Get());
    InstallFakeSibling(L"raterkit.dll", IFileRater::kId, rater_.Get());
    StartModule(stepsUnderTest());
  }
  // The process ends with the module started, as with a host that never frees the library.
  ~ModuleUnderTest() = default;

  ComPtr<RecordingSafeguard> safeguard_ = MakeComObject<RecordingSafeguard>();
  ComPtr<FakeSettings> settings_ = MakeComObject<FakeSettings>();
  ComPtr<FakeFileRater> rater_ = MakeComObject<FakeFileRater>();
};

// An empty item list, no recorded calls, checkpoints on.
class ModuleTest : public ::testing::Test {
 protected:
  ModuleTest() {
    module.Safeguard().Clear();
    module.Settings().useCheckpoints = true;
    ScopedLock lock(Items().Lock());
    Items().Clear();
  }

  // The statistics log as saved, every line.
  static std::wstring LogText() {
    SaveLog();
    const std::string bytes = ReadFileBytes(LogFilePath());
    return std::wstring(reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / sizeof(wchar_t));
  }
  static bool LogHas(std::wstring_view line) { return LogText().find(line) != std::wstring::npos; }

  ModuleUnderTest& module = ModuleUnderTest::Instance();
};

}  // namespace smh::test
