#include "core/contracts/boundary_call.h"
#include "infra/runtime/com_ptr.h"
#include "infra/runtime/exceptions.h"

#include <oleauto.h>
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>

namespace smh::test {
namespace {

struct ErrorInfo {
  std::wstring message;
  std::wstring className;
};

// What the thread's error info says; reading takes it away.
ErrorInfo TakeErrorInfo() {
  ErrorInfo taken;
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Put()) != S_OK) return taken;
  BSTR text = nullptr;
  info->GetDescription(&text);
  taken.message.assign(text, SysStringLen(text));
  SysFreeString(text);
  info->GetSource(&text);
  taken.className.assign(text, SysStringLen(text));
  SysFreeString(text);
  return taken;
}

struct Row {
  std::function<void()> raise;
  HRESULT libraryResult;
  HRESULT siblingResult;
  LSTATUS status;
  const wchar_t* message;
  const wchar_t* className;
};

const Row kRows[] = {
    {[] { RaiseOSError(ERROR_ACCESS_DENIED); }, E_ACCESSDENIED, E_ACCESSDENIED, ERROR_ACCESS_DENIED,
     L"System Error.  Code: 5.", L"EOSError"},
    // A failure that did not say why is no success.
    {[] { RaiseOSError(ERROR_SUCCESS); }, E_FAIL, E_FAIL, ERROR_INTERNAL_ERROR, L"System Error.  Code: 0.",
     L"EOSError"},
    {[] { RaiseOSError(ERROR_OUTOFMEMORY); }, E_OUTOFMEMORY, E_OUTOFMEMORY, ERROR_OUTOFMEMORY,
     L"System Error.  Code: 14.", L"EOSError"},
    {[] { throw EOleSysError(CO_E_NOTINITIALIZED); }, CO_E_NOTINITIALIZED, CO_E_NOTINITIALIZED,
     ERROR_INTERNAL_ERROR, L"", L"EOleSysError"},
    {[] { throw EOleSysError(S_FALSE); }, E_FAIL, E_FAIL, ERROR_INTERNAL_ERROR, L"", L"EOleSysError"},
    {[] { throw EAbort(); }, E_ABORT, E_ABORT, ERROR_INTERNAL_ERROR, L"Operation aborted", L"EAbort"},
    {[] { throw Exception(L"Of its own"); }, E_FAIL, E_FAIL, ERROR_INTERNAL_ERROR, L"Of its own",
     L"Exception"},
    {[] { throw std::bad_alloc(); }, E_FAIL, E_OUTOFMEMORY, ERROR_OUTOFMEMORY, L"Out of memory",
     L"EOutOfMemory"},
    {[] { throw 5; }, E_FAIL, E_FAIL, ERROR_INTERNAL_ERROR, L"Unexpected error", L"Exception"},
};

TEST(BoundaryCallTest, LibraryAnswersWithErrorInfo) {
  int out = 0;
  for (const Row& row : kRows) {
    SCOPED_TRACE(&row - kRows);
    const auto expectInfo = [&row] {
      const ErrorInfo info = TakeErrorInfo();
      EXPECT_TRUE(info.message.starts_with(row.message)) << info.message;
      EXPECT_EQ(info.className, row.className);
    };
    EXPECT_EQ(BoundaryResult(row.raise), row.libraryResult);
    expectInfo();
    EXPECT_EQ(BoundaryResult(&out, row.raise), row.libraryResult);
    expectInfo();
    const auto raise = [&row]() -> int {
      row.raise();
      return 1;
    };
    EXPECT_EQ(BoundaryValue(7, raise), 7);
    expectInfo();
    EXPECT_EQ(BoundaryOutcome([&row]() -> std::wstring {
                row.raise();
                return {};
              }),
              row.libraryResult);
    expectInfo();
  }
  // A success leaves nothing of an earlier failure.
  for (const std::function<void()>& succeed :
       {std::function<void()>([] { EXPECT_EQ(BoundaryResult([] {}), S_OK); }),
        std::function<void()>([] { EXPECT_EQ(BoundaryValue(7, [] { return 1; }), 1); })}) {
    EXPECT_EQ(BoundaryResult(static_cast<int*>(nullptr), [] { FAIL(); }), E_POINTER);
    succeed();
    EXPECT_EQ(TakeErrorInfo().className, L"");
  }
}

TEST(BoundaryCallTest, SiblingAnswersWithoutTouchingErrorInfo) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(&row - kRows);
    ReportFailure(E_FAIL, L"The caller's", L"Caller");
    EXPECT_EQ(GuardedResult(row.raise), row.siblingResult);
    const auto raiseStatus = [&row]() -> LSTATUS {
      row.raise();
      return ERROR_SUCCESS;
    };
    EXPECT_EQ(GuardedStatus(raiseStatus), row.status);
    EXPECT_EQ(GuardedValue<LSTATUS>(7, raiseStatus), 7);
    BoundaryText text = L"stale";
    EXPECT_EQ(GuardedText(&text,
                          [&]() -> std::wstring {
                            row.raise();
                            return L"never";
                          }),
              row.siblingResult);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(TakeErrorInfo().message, L"The caller's");
  }
  ReportFailure(E_FAIL, L"The caller's", L"Caller");
  EXPECT_EQ(GuardedResult([] {}), S_OK);
  EXPECT_EQ(GuardedStatus([]() -> LSTATUS { return ERROR_NO_MORE_ITEMS; }), ERROR_NO_MORE_ITEMS);
  EXPECT_EQ(GuardedValue(7, [] { return 1; }), 1);
  BoundaryString text;
  EXPECT_EQ(GuardedText(text.Put(), [] { return L"text"; }), S_OK);
  EXPECT_EQ(text.View(), L"text");
  EXPECT_EQ(GuardedText(nullptr, [] { return L"text"; }), E_POINTER);
  EXPECT_EQ(TakeErrorInfo().message, L"The caller's");
}

}  // namespace
}  // namespace smh::test
