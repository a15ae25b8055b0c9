// Formatting, text, exceptions, counting objects, boundary strings, locks and start-up tables.
#include "infra/assertion.h"
#include "infra/boundary_string.h"
#include "infra/com_object.h"
#include "infra/critical_section.h"
#include "infra/handle.h"
#include "infra/module_path.h"
#include "infra/module_steps.h"
#include "infra/text.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace smh {
namespace {

TEST(FormatTest, HandlesTextAndNumbers) {
  EXPECT_EQ(Format(L"%s (%s) = \"%s\"", L"a", std::wstring(L"b"), std::wstring_view(L"c")), L"a (b) = \"c\"");
  EXPECT_EQ(Format(L"%d|%d|%d", -1, 4'000'000'000u, std::int64_t{1} << 40), L"-1|4000000000|1099511627776");
  EXPECT_EQ(Format(L"100%% %s", L"%s%d"), L"100% %s%d");
  EXPECT_EQ(Format(L"no handle", L"left over"), L"no handle");
  EXPECT_EQ(Format(L"%s", std::wstring(L"a\0b", 3)), std::wstring(L"a\0b", 3));
}

TEST(FormatTest, RefusesWhatItCannotFormat) {
  EXPECT_THROW(Format(L"%s"), EConvertError);
  EXPECT_THROW(Format(L"%s %s", L"a"), EConvertError);
  EXPECT_THROW(Format(L"%d", L"text"), EConvertError);
  EXPECT_THROW(Format(L"%s", 1), EConvertError);
  EXPECT_THROW(Format(L"%x", 1), EConvertError);
  EXPECT_THROW(Format(L"at the end %", 1), EConvertError);
}

TEST(TextTest, OrdinalComparisonIgnoresCaseBeyondAscii) {
  EXPECT_TRUE(SameText(L"\x00C4pfel", L"\x00E4PFEL"));
  EXPECT_FALSE(SameText(L"ss", L"\x00DF"));
  EXPECT_TRUE(SameText({}, L""));
  EXPECT_FALSE(SameText(L"a", {}));
  EXPECT_FALSE(SameText(std::wstring(L"a\0b", 3), std::wstring(L"a\0c", 3)));
  EXPECT_LT(CompareText(L"a", L"B"), 0);
  EXPECT_GT(CompareText(L"b", {}), 0);
  EXPECT_EQ(CompareText({}, {}), 0);
  EXPECT_TRUE(StartsText(L"(X64)", L"(x64)HKEY"));
  EXPECT_FALSE(StartsText(L"(x64)", L"(x6"));
  EXPECT_TRUE(EndsText(L".LNK", L"a.lnk"));
  EXPECT_TRUE(SameLocaleText(L"READ Me", L"read mE"));
  EXPECT_FALSE(SameLocaleText(L"a", {}));
}

TEST(TextTest, TrimAndReplace) {
  EXPECT_EQ(Trim(L" \t\r\na b\x01 "), L"a b");
  EXPECT_EQ(Trim(L" \t"), L"");
  EXPECT_EQ(ReplaceText(L"aXbxc", L"x", L"--"), L"a--b--c");
  EXPECT_EQ(ReplaceText(L"aaa", L"aa", L"b"), L"ba");
  EXPECT_EQ(ReplaceText(L"abc", L"", L"x"), L"abc");
  EXPECT_EQ(ReplaceText(L"a", L"abc", L"x"), L"a");
}

TEST(TextTest, OnlyAnEnclosingPairOfQuotesGoes) {
  const struct {
    const wchar_t* text;
    const wchar_t* expected;
  } rows[] = {
      {L"\"a b\"", L"a b"},
      {L"\"a\" \"b\"", L"\"a\" \"b\""},
      {L"\"say \"\"hi\"\"\"", L"say \"hi\""},
      {L"\"", L"\""},
      {L"\"\"", L""},
      {L"\"\"\"", L"\"\"\""},
      {L"\"\"\"\"", L"\""},
      {L"a\"", L"a\""},
      {L"", L""},
      {L"\"open \"\"", L"\"open \"\""},
  };
  for (const auto& row : rows) EXPECT_EQ(DequoteText(row.text), row.expected) << std::wstring(row.text);
  for (const wchar_t* text : {L"", L"plain", L"\"", L"a\"\"b"}) EXPECT_EQ(DequoteText(QuoteText(text)), text);
}

TEST(TextTest, PartsOfPaths) {
  const struct {
    const wchar_t* path;
    const wchar_t* folder;
    const wchar_t* file;
    const wchar_t* extension;
  } rows[] = {
      {L"C:\\a.b\\c", L"C:\\a.b\\", L"c", L""},
      {L"C:x.exe", L"C:", L"x.exe", L".exe"},
      {L"a/b.tar.gz", L"a/", L"b.tar.gz", L".gz"},
      {L"\\\\host\\share\\", L"\\\\host\\share\\", L"", L""},
      {L"plain", L"", L"plain", L""},
      {L".", L"", L".", L"."},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FolderPart(row.path), row.folder);
    EXPECT_EQ(FileNamePart(row.path), row.file);
    EXPECT_EQ(ExtensionPart(row.path), row.extension);
  }
  EXPECT_EQ(WithTrailingBackslash(L"a"), L"a\\");
  EXPECT_EQ(WithTrailingBackslash(L"a\\"), L"a\\");
  EXPECT_EQ(WithoutTrailingBackslash(L"a\\\\"), L"a\\");
}

TEST(ExceptionTest, MessagesAndResults) {
  const EOSError error(ERROR_ACCESS_DENIED);
  EXPECT_EQ(error.Message(), L"System Error.  Code: 5.\r\n" + SystemErrorText(ERROR_ACCESS_DENIED));
  EXPECT_FALSE(SystemErrorText(ERROR_ACCESS_DENIED).empty());
  EXPECT_EQ(error.Result(), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
  EXPECT_EQ(SystemErrorText(0x2FFFFFFF), L"");
  EXPECT_NO_THROW(CheckStatus(ERROR_SUCCESS));
  EXPECT_THROW(CheckStatus(ERROR_KEY_DELETED), EOSError);
  try {
    SMH_ASSERT(L"uLocationStartup", 1 + 1 == 3);
    FAIL();
  } catch (const EAssertionFailed& failure) {
    EXPECT_EQ(failure.Message(), Format(L"Assertion failure (uLocationStartup, line %d)", __LINE__ - 3));
    EXPECT_EQ(failure.Result(), E_UNEXPECTED);
  }
}

struct INamed : IUnknown {
  static constexpr GUID iid = {0x11111111, 0x1111, 0x1111, {0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11}};
  virtual std::int32_t STDMETHODCALLTYPE Name() = 0;
};
struct ICounted : IUnknown {
  static constexpr GUID iid = {0x22222222, 0x2222, 0x2222, {0x22, 0x22, 0x22, 0x22, 0x22, 0x22, 0x22, 0x22}};
  virtual std::int32_t STDMETHODCALLTYPE Count() = 0;
};

class Both : public ComObject<INamed, ICounted> {
 public:
  explicit Both(int* alive) : alive_(alive) { ++*alive_; }
  ~Both() override { --*alive_; }
  std::int32_t STDMETHODCALLTYPE Name() override { return 1; }
  std::int32_t STDMETHODCALLTYPE Count() override { return 2; }

 private:
  int* alive_;
};

TEST(ComObjectTest, AnswersItsInterfacesAndCounts) {
  int alive = 0;
  {
    ComPtr<Both> object = MakeComObject<Both>(&alive);
    ComPtr<ICounted> counted;
    ASSERT_EQ(object->QueryInterface(ICounted::iid, reinterpret_cast<void**>(counted.Put())), S_OK);
    EXPECT_EQ(counted->Count(), 2);
    ComPtr<IUnknown> first;
    ComPtr<IUnknown> second;
    ASSERT_EQ(object->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(first.Put())), S_OK);
    ASSERT_EQ(counted->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(second.Put())), S_OK);
    EXPECT_EQ(first.Get(), second.Get());
    void* none = object.Get();
    EXPECT_EQ(object->QueryInterface(IID_IDispatch, &none), E_NOINTERFACE);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    object.Reset();
    EXPECT_EQ(alive, 1);
  }
  EXPECT_EQ(alive, 0);
}

TEST(BoundaryStringTest, LayoutIsThePublishedOne) {
  BoundaryText text = MakeBoundaryText(std::wstring_view(L"a\0b", 3));
  const auto* const words = reinterpret_cast<const std::uint32_t*>(text);
  EXPECT_EQ(words[-2], 1u);
  EXPECT_EQ(words[-1], 3u);
  EXPECT_EQ(text[3], L'\0');
  AddRefBoundaryText(text);
  EXPECT_EQ(words[-2], 2u);
  ReleaseBoundaryText(text);
  BoundaryString owner;
  *owner.Put() = text;
  const BoundaryString copy = owner;
  EXPECT_EQ(words[-2], 2u);
  EXPECT_EQ(copy.View(), std::wstring_view(L"a\0b", 3));
  EXPECT_EQ(MakeBoundaryText({}), nullptr);
  EXPECT_EQ(TakeText([](BoundaryText*) { return E_FAIL; }), L"");
}

TEST(CriticalSectionTest, KnowsItsHolder) {
  CriticalSection section;
  section.Enter();
  section.Enter();
  section.Leave();
  EXPECT_TRUE(section.IsHeldByCaller());
  bool other = true;
  bool entered = true;
  std::thread([&] {
    other = section.IsHeldByCaller();
    entered = section.TryEnter();
  }).join();
  EXPECT_FALSE(other);
  EXPECT_FALSE(entered);
  section.Leave();
  EXPECT_FALSE(section.IsHeldByCaller());
}

TEST(HandleTest, ClosesWhatItOwnsOnce) {
  HANDLE raw = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  DWORD flags = 0;
  {
    ScopedHandle first(raw);
    ScopedHandle second(std::move(first));
    EXPECT_FALSE(first);
    second = std::move(second);
    ASSERT_EQ(second.Get(), raw);
    EXPECT_TRUE(GetHandleInformation(raw, &flags));
    EXPECT_FALSE(ScopedHandle(INVALID_HANDLE_VALUE));
  }
  EXPECT_FALSE(GetHandleInformation(raw, &flags));
}

std::wstring g_steps;

template <wchar_t name>
void Start() {
  g_steps += name;
}
template <wchar_t name>
void Stop(StopMode& mode) noexcept {
  g_steps += static_cast<wchar_t>(mode == StopMode::kUnload ? name - L'a' + L'A' : L'!');
}
void Throw() {
  throw Exception(L"no start");
}
void Worsen(StopMode& mode) noexcept {
  mode = StopMode::kUnloadBroken;
}

TEST(ModuleStepsTest, StopsBackwards) {
  const ModuleStep good[] = {
      {L"a", Start<L'a'>, Stop<L'a'>}, {L"b", Start<L'b'>, Worsen}, {L"c", Start<L'c'>, Stop<L'c'>}};
  g_steps.clear();
  StartModule(good);
  StopModule(good);
  EXPECT_EQ(g_steps, L"abcC!");

  const ModuleStep bad[] = {
      {L"a", Start<L'a'>, Stop<L'a'>}, {L"b", Throw, Stop<L'b'>}, {L"c", Start<L'c'>, Stop<L'c'>}};
  g_steps.clear();
  EXPECT_THROW(StartModule(bad), Exception);
  EXPECT_EQ(g_steps, L"aA");
}

TEST(ModulePathTest, NamesProgramAndModule) {
  EXPECT_TRUE(EndsText(L"\\infra_tests.exe", ModuleFileName(nullptr)));
  EXPECT_EQ(ThisModule(), GetModuleHandleW(nullptr));
}

}  // namespace
}  // namespace smh
