#include "infra/intf_DebugLog.h"

#include "common/data_folder.h"
#include "siblings/sibling_library.h"
#include "support/file_fixture.h"

#include <gtest/gtest.h>

#include <map>
#include <cstring>
#include <optional>
#include <thread>

namespace smh {
namespace {

using test::CallSlot;

std::wstring ReadLog() {
  const std::string bytes = test::ReadFileBytes(DataFolder() + L"Logs\\debug.log");
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
  return text;
}

// What follows date, time and thread in a line, and the thread.
struct Line {
  std::wstring thread;
  std::wstring text;
};

// Works on a log of its own: an existing one is put back.
class DebugLogTest : public testing::Test {
 protected:
  DebugLogTest() {
    MoveFileExW(path_.c_str(), kept_.c_str(), MOVEFILE_REPLACE_EXISTING);
    library_.emplace(L"tracekit.dll");
    log_ = library_->Service<IDebugLog>();
  }
  ~DebugLogTest() override {
    library_.reset();
    DeleteFileW(path_.c_str());
    MoveFileExW(kept_.c_str(), path_.c_str(), MOVEFILE_REPLACE_EXISTING);
  }

  HRESULT Enter(const void* context, const wchar_t* name, std::vector<const wchar_t*> args = {}) {
    return CallSlot<HRESULT>(log_, 1, context, name, static_cast<const wchar_t* const*>(args.data()),
                             static_cast<std::int32_t>(args.size()));
  }
  HRESULT Exit(const void* context) { return CallSlot<HRESULT>(log_, 2, context); }
  HRESULT Message(const wchar_t* text) { return CallSlot<HRESULT>(log_, 3, text); }
  HRESULT SetEnabled(std::int32_t enabled) { return CallSlot<HRESULT>(log_, 4, enabled); }

  static std::vector<Line> Lines() {
    std::wstring all = ReadLog();
    EXPECT_EQ(all.substr(0, 1), L"\xFEFF");
    std::vector<Line> lines;
    for (std::size_t at = 1; at < all.size();) {
      const std::size_t end = all.find(L"\r\n", at);
      EXPECT_NE(end, std::wstring::npos);
      // "yyyy-mm-dd hh:nn:ss.zzz tttttttt "
      lines.push_back({all.substr(at + 24, 8), all.substr(at + 33, end - at - 33)});
      at = end + 2;
    }
    return lines;
  }
  static std::vector<std::wstring> Texts() {
    std::vector<std::wstring> texts;
    for (const Line& line : Lines()) texts.push_back(line.text);
    return texts;
  }

  const std::wstring path_ = DataFolder() + L"Logs\\debug.log";
  const std::wstring kept_ = path_ + L".kept";
  std::optional<test::SiblingLibrary> library_;
  IDebugLog* log_ = nullptr;
};

const void* const kContext = reinterpret_cast<const void*>(0xAB12);

TEST_F(DebugLogTest, MethodsNestFromTheFirstCallOn) {
  EXPECT_EQ(Enter(kContext, L"DeleteKey", {L"Software\\X", nullptr, L"2"}), S_OK);
  EXPECT_EQ(Message(L"delete subkeys"), S_OK);
  EXPECT_EQ(Enter(nullptr, L"Inner"), S_OK);
  EXPECT_EQ(Exit(nullptr), S_OK);
  EXPECT_EQ(Exit(kContext), S_OK);
  EXPECT_EQ(Exit(kContext), S_OK);
  EXPECT_EQ(Message(L"after"), S_OK);
  EXPECT_EQ(Texts(),
            (std::vector<std::wstring>{L"> DeleteKey(Software\\X, , 2) [0000ab12]", L"  delete subkeys",
                                       L"  > Inner() [00000000]", L"  < [00000000]", L"< [0000ab12]",
                                       L"< [0000ab12]", L"after"}));
}

TEST_F(DebugLogTest, OutputIsSwitchedWhileTheNestingGoesOn) {
  EXPECT_EQ(SetEnabled(0), S_OK);
  Enter(kContext, L"Hidden");
  Message(L"hidden");
  EXPECT_EQ(SetEnabled(256), S_OK);
  Message(L"shown");
  Exit(kContext);
  EXPECT_EQ(Texts(), (std::vector<std::wstring>{L"  shown", L"< [0000ab12]"}));
}

TEST_F(DebugLogTest, NullsAndLineEndsStayInOneLine) {
  EXPECT_EQ((CallSlot<HRESULT>(log_, 1, kContext, static_cast<const wchar_t*>(nullptr),
                               static_cast<const wchar_t* const*>(nullptr), std::int32_t{3})),
            S_OK);
  Exit(kContext);
  const wchar_t* const one[] = {L"a"};
  EXPECT_EQ((CallSlot<HRESULT>(log_, 1, kContext, L"M", &one[0], std::int32_t{-1})), S_OK);
  Exit(kContext);
  EXPECT_EQ(Message(nullptr), S_OK);
  EXPECT_EQ(Message(L"two\r\nlines \u00E4\xD800"), S_OK);
  EXPECT_EQ(Texts(), (std::vector<std::wstring>{L"> () [0000ab12]", L"< [0000ab12]", L"> M() [0000ab12]",
                                                L"< [0000ab12]", L"", L"two  lines \u00E4\xD800"}));
}

TEST_F(DebugLogTest, ThreadsWriteWholeLinesAndNestApart) {
  constexpr int kRounds = 50;
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([this] {
        for (int round = 0; round < kRounds; ++round) {
          Enter(kContext, L"Work");
          Message(L"inside");
          Exit(kContext);
        }
      });
    }
  }
  std::map<std::wstring, std::vector<std::wstring>> byThread;
  for (const Line& line : Lines()) byThread[line.thread].push_back(line.text);
  EXPECT_EQ(byThread.size(), 4u);
  for (const auto& [thread, texts] : byThread) {
    ASSERT_EQ(texts.size(), 3u * kRounds);
    for (std::size_t i = 0; i < texts.size(); i += 3) {
      EXPECT_EQ(texts[i], L"> Work() [0000ab12]");
      EXPECT_EQ(texts[i + 1], L"  inside");
      EXPECT_EQ(texts[i + 2], L"< [0000ab12]");
    }
  }
}

TEST_F(DebugLogTest, LaterLoadAppends) {
  Message(L"first");
  library_.reset();
  library_.emplace(L"tracekit.dll");
  log_ = library_->Service<IDebugLog>();
  Message(L"second");
  EXPECT_EQ(Texts(), (std::vector<std::wstring>{L"first", L"second"}));
}

}  // namespace
}  // namespace smh
