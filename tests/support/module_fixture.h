// The whole module started inside a test program, with stand-ins for the services that change something.
#pragma once

#include "core/module_start.h"
#include "infra/log/uStatisticsLog.h"
#include "model/item_list.h"
#include "model/uLocationStartup.h"
#include "tests/support/fake_siblings.h"
#include "tests/support/file_fixture.h"
#include "tests/support/recording_safeguard.h"

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
    ClearItems();
  }

  static void ClearItems() {
    ScopedLock lock(Items().Lock());
    Items().Clear();
  }
  // The location's items in the order of the list, and what their entries are called.
  static std::vector<ItemRef> Listed(const TLocationStartup& location) {
    std::vector<ItemRef> listed;
    ScopedLock lock(Items().Lock());
    for (const ItemRef& item : Items().Snapshot()) {
      if (item->Location() == location.LocationType()) listed.push_back(item);
    }
    return listed;
  }
  static std::vector<std::wstring> Captions(const TLocationStartup& location) {
    std::vector<std::wstring> captions;
    for (const ItemRef& item : Listed(location)) captions.emplace_back(item->GivenText());
    return captions;
  }

  // The service's calls that change something.
  std::vector<std::wstring> RecordedChanges() const {
    std::vector<std::wstring> lines = module.Safeguard().Lines();
    std::erase_if(lines, [](const std::wstring& line) {
      const bool isKey = line == L"GetRegAccess" || line == L"CloseKey" || line.starts_with(L"OpenKey");
      return isKey || line.find(L"Checkpoint") != std::wstring::npos;
    });
    return lines;
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

// A fixture whose tests run twice: with changes recorded inside a checkpoint, and plain.
template <typename Fixture>
class BothWays : public Fixture, public ::testing::WithParamInterface<bool> {
 protected:
  BothWays() { this->module.Settings().useCheckpoints = this->GetParam(); }

  // The service's calls since the last look: all inside a checkpoint of that title, and these when some are
  // given. None without checkpoints.
  void ExpectCheckpoint(const std::wstring& title, const std::vector<std::wstring>& calls = {}) {
    std::vector<std::wstring> lines = this->module.Safeguard().Lines();
    this->module.Safeguard().Clear();
    if (!this->GetParam()) {
      EXPECT_TRUE(lines.empty()) << "recorded without checkpoints";
      return;
    }
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines.front(), L"BeginCheckpoint \"" + title + L'"');
    EXPECT_EQ(lines.back(), L"EndCheckpoint");
    lines = std::vector(lines.begin() + 1, lines.end() - 1);
    for (const std::wstring& line : lines) EXPECT_EQ(line.find(L"Checkpoint"), std::wstring::npos);
    if (!calls.empty()) {
      EXPECT_EQ(lines, calls);
    }
  }
};

}  // namespace smh::test
