#include "core/contracts/intf_DebugLog.h"
#include "siblings/common/product.h"
#include "tests/siblings/common/sibling_library.h"
#include "tests/support/file_fixture.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <regex>
#include <thread>

namespace smh::test {
namespace {

using Lines = std::vector<std::wstring>;

const void* const kContext = reinterpret_cast<const void*>(0xAB12);

class DebugLogTest : public testing::Test {
 protected:
  DebugLogTest() {
    DeleteFileW(path_.c_str());
    Load();
  }

  void Load() {
    library_.emplace(L"tracekit.dll");
    log_ = library_->Service<IDebugLog>();
  }
  HRESULT Enter(const void* context, const wchar_t* name, const wchar_t* const* arguments = nullptr,
                std::int32_t count = 0) {
    return CallSlot<HRESULT>(log_, 1, context, name, arguments, count);
  }
  HRESULT Exit(const void* context) { return CallSlot<HRESULT>(log_, 2, context); }
  HRESULT Message(const wchar_t* text) { return CallSlot<HRESULT>(log_, 3, text); }
  HRESULT SetEnabled(std::int32_t enabled) { return CallSlot<HRESULT>(log_, 4, enabled); }

  // By thread, without the time.
  std::map<std::wstring, Lines> Written() const {
    static const std::wregex format(
        L"\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} ([0-9a-f]{8}) ([^]*)");
    std::map<std::wstring, Lines> byThread;
    for (const std::wstring& line : ReadUtf16Lines(path_)) {
      std::wsmatch parts;
      EXPECT_TRUE(std::regex_match(line, parts, format)) << line;
      byThread[parts[1]].push_back(parts[2]);
    }
    return byThread;
  }
  Lines WrittenByOneThread() const {
    const auto byThread = Written();
    EXPECT_EQ(byThread.size(), 1u);
    return byThread.empty() ? Lines() : byThread.begin()->second;
  }

  const std::wstring path_ = DataFolder() + L"Logs\\debug.log";
  std::optional<SiblingLibrary> library_;
  IDebugLog* log_ = nullptr;
};

TEST_F(DebugLogTest, MethodsNestEvenWhileOutputIsOffAndALaterLoadAppends) {
  const wchar_t* const arguments[] = {L"Software\\X", nullptr, L"2"};
  EXPECT_EQ(Enter(kContext, L"DeleteKey", &arguments[0], 3), S_OK);
  EXPECT_EQ(Message(L"delete subkeys"), S_OK);
  EXPECT_EQ(SetEnabled(0), S_OK);
  EXPECT_EQ(Enter(nullptr, L"Hidden"), S_OK);
  EXPECT_EQ(Message(L"hidden"), S_OK);
  EXPECT_EQ(SetEnabled(256), S_OK);
  EXPECT_EQ(Message(L"shown"), S_OK);
  EXPECT_EQ(Exit(nullptr), S_OK);
  EXPECT_EQ(Exit(kContext), S_OK);
  EXPECT_EQ(Exit(kContext), S_OK);
  Load();
  EXPECT_EQ(Message(L"after"), S_OK);
  EXPECT_EQ(WrittenByOneThread(),
            (Lines{L"> DeleteKey(Software\\X, , 2) [0000ab12]", L"  delete subkeys", L"    shown",
                   L"  < [00000000]", L"< [0000ab12]", L"< [0000ab12]", L"after"}));
}

TEST_F(DebugLogTest, NullsAndLineEndsStayInOneLine) {
  const wchar_t* const one[] = {L"a"};
  EXPECT_EQ(Enter(kContext, nullptr, nullptr, 3), S_OK);
  Exit(kContext);
  EXPECT_EQ(Enter(kContext, L"M", &one[0], -1), S_OK);
  Exit(kContext);
  EXPECT_EQ(Message(nullptr), S_OK);
  EXPECT_EQ(Message(L"two\r\nlines \u00E4\xD800"), S_OK);
  EXPECT_EQ(WrittenByOneThread(), (Lines{L"> () [0000ab12]", L"< [0000ab12]", L"> M() [0000ab12]",
                                         L"< [0000ab12]", L"", L"two  lines \u00E4\xD800"}));
}

// The older half goes, in whole lines; what a link leads to is not written.
TEST_F(DebugLogTest, KeepsTheNewestLinesAndFollowsNoLink) {
  std::wstring old(1, L'\xFEFF');
  while (old.size() < (std::size_t{8} << 20)) old += L"an old line\r\n";
  WriteFileBytes(path_, {reinterpret_cast<const char*>(old.data()), old.size() * sizeof(wchar_t)});
  EXPECT_EQ(Message(L"new"), S_OK);
  const Lines lines = ReadUtf16Lines(path_);
  EXPECT_NEAR(static_cast<double>(lines.size()), (8 << 20) / 26.0, 3);
  EXPECT_EQ(lines[0], L"(Older lines are not kept.)");
  EXPECT_EQ(lines[1], L"an old line");
  EXPECT_TRUE(lines.back().ends_with(L" new"));
  const TemporaryFolder folder;
  const std::wstring other = folder.Write(L"other", "somebody's");
  library_.reset();
  ASSERT_TRUE(DeleteFileW(path_.c_str()));
  ASSERT_TRUE(CreateHardLinkW(path_.c_str(), other.c_str(), nullptr));
  Load();
  EXPECT_NE(Message(L"new"), S_OK);
  EXPECT_EQ(ReadFileBytes(other), "somebody's");
  DeleteFileW(path_.c_str());
}

TEST_F(DebugLogTest, ThreadsWriteWholeLinesAndNestApart) {
  constexpr int kRounds = 50;
  std::vector<std::jthread> threads;
  Lines expected;
  for (int round = 0; round < kRounds; ++round) {
    expected.insert(expected.end(), {L"> Work() [0000ab12]", L"  inside", L"< [0000ab12]"});
  }
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([this] {
      for (int round = 0; round < kRounds; ++round) {
        Enter(kContext, L"Work");
        Message(L"inside");
        Exit(kContext);
      }
    });
  }
  threads.clear();
  EXPECT_EQ(Written().size(), 4u);
  for (const auto& [thread, lines] : Written()) EXPECT_EQ(lines, expected) << thread;
}

}  // namespace
}  // namespace smh::test
