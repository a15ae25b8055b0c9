#include "tests/core/boundary_client.h"

#include "infra/runtime/com_ptr.h"
#include "infra/runtime/import_function.h"
#include "tests/support/child_process.h"

#include <oleauto.h>

#include <cstring>
#include <regex>

namespace smh::test {

namespace {

// The two words before a boundary string.
struct TextHead {
  std::int32_t references;
  std::uint32_t length;
};

TextHead HeadOf(const wchar_t* text) {
  TextHead head;
  std::memcpy(&head, reinterpret_cast<const char*>(text) - 8, sizeof(head));
  return head;
}

void* BlockOf(const wchar_t* text) {
  return const_cast<char*>(reinterpret_cast<const char*>(text) - 8);
}

std::wstring TakeBstr(BSTR text) {
  std::wstring result(text == nullptr ? L"" : text, SysStringLen(text));
  SysFreeString(text);
  return result;
}

}  // namespace

// No words before it and not from the heap: releasing it would fault.
const wchar_t OutText::kGarbage[] = L"garbage";

OutText::~OutText() {
  if (text_ == nullptr || text_ == kGarbage) return;
  auto* const references = static_cast<LONG*>(BlockOf(text_));
  if (InterlockedDecrement(references) == 0) HeapFree(GetProcessHeap(), 0, references);
}

std::wstring OutText::Text() const {
  return text_ == nullptr || text_ == kGarbage ? std::wstring() : std::wstring(text_, HeadOf(text_).length);
}

testing::AssertionResult OutText::IsWellFormed() const {
  if (text_ == nullptr) return testing::AssertionSuccess();
  if (text_ == kGarbage) return testing::AssertionFailure() << "the out text was not written";
  const TextHead head = HeadOf(text_);
  const SIZE_T needed = sizeof(head) + (head.length + 1) * sizeof(wchar_t);
  const HANDLE heap = GetProcessHeap();
  if (head.references >= 1 && head.length != 0 && std::wcslen(text_) == head.length &&
      HeapValidate(heap, 0, BlockOf(text_)) && HeapSize(heap, 0, BlockOf(text_)) >= needed) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << head.references << " references, length " << head.length;
}

OutVariant::OutVariant() noexcept {
  VariantInit(&value_);
  value_.vt = VT_UNKNOWN;
  value_.punkVal = reinterpret_cast<IUnknown*>(16);
}

OutVariant::OutVariant(const RawEntry& entry, std::int32_t index) : OutVariant() {
  EXPECT_EQ(entry.GetProperty(index, Put()), S_OK) << index;
}

OutVariant::~OutVariant() {
  if (value_.vt == VT_BSTR) SysFreeString(value_.bstrVal);
}

std::wstring OutVariant::Text() const {
  if (value_.vt != VT_BSTR || value_.bstrVal == nullptr) return {};
  return std::wstring(value_.bstrVal, SysStringLen(value_.bstrVal));
}

RawFacts::RawFacts(const RawObject& entry) {
  GUID id;
  if (FAILED(IIDFromString(kFactsId, &id)) || entry.QueryInterface(&id, Put()) != S_OK) {
    throw std::runtime_error("no facts");
  }
}

std::wstring RawEntry::Fact(std::int32_t index) const {
  OutVariant value;
  EXPECT_EQ(RawFacts(*this).GetFact(index, value.Put()), S_OK) << index;
  if (value.Type() == VT_I4) return std::to_wstring(value->lVal);
  if (value.Type() == VT_BOOL) return value->boolVal == VARIANT_TRUE ? L"1" : L"0";
  if (value.Type() == VT_DATE) return value->date > 0 ? L"set" : L"unset";
  EXPECT_TRUE(value.Type() == VT_BSTR || value.Type() == VT_NULL) << index;
  return value.Type() == VT_NULL ? L"-" : L"[" + value.Text() + L"]";
}

std::wstring RawEntry::Name() const {
  OutText name;
  GetName(name.Put());
  return name.Text();
}

std::wstring RawStrings::Text(int text) const {
  OutText out;
  Get(text, out.Put());
  return out.Text();
}

std::wstring LoadedLibrary::File() {
  return ThisFolder() + L"StartupManagerHelper.dll";
}

LoadedLibrary::LoadedLibrary(const std::wstring& file) : module_(LoadLibraryW(file.c_str())) {
  getInstance_ = ImportFunction<decltype(getInstance_)>(module_.Get(), "GetInstance");
  if (getInstance_ == nullptr) throw std::runtime_error("the library cannot be loaded");
}

RawManager LoadedLibrary::Manager() const {
  RawManager manager;
  *manager.Put() = GetInstance(kManagerId);
  if (!manager) throw std::runtime_error("no manager");
  manager.AddRef();
  return manager;
}

std::optional<ErrorInfo> TakeErrorInfo() {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Put()) != S_OK || !info) return std::nullopt;
  BSTR description = nullptr;
  BSTR source = nullptr;
  info->GetDescription(&description);
  info->GetSource(&source);
  return ErrorInfo{TakeBstr(description), TakeBstr(source)};
}

void PlantErrorInfo() {
  ComPtr<ICreateErrorInfo> made;
  ComPtr<IErrorInfo> info;
  if (FAILED(CreateErrorInfo(made.Put()))) throw std::runtime_error("no error info");
  made->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(info.Put()));
  SetErrorInfo(0, info.Get());
}

testing::AssertionResult IsExplained(HRESULT result, HRESULT expected) {
  if (result != expected) return testing::AssertionFailure() << std::hex << "result " << result;
  const std::optional<ErrorInfo> info = TakeErrorInfo();
  if (!info) return testing::AssertionFailure() << "no error info";
  if (info->description.empty() || info->source.empty()) {
    return testing::AssertionFailure() << "an error info without text";
  }
  return testing::AssertionSuccess();
}

testing::AssertionResult IsAssertion(HRESULT result, const std::wstring& unit) {
  const ErrorInfo info = TakeErrorInfo().value_or(ErrorInfo{});
  const std::wregex expected(L"Assertion failure \\(" + unit + L", line [0-9]+\\)");
  if (result == E_UNEXPECTED && info.source == L"EAssertionFailed" &&
      std::regex_match(info.description, expected)) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << std::hex << result << ' '
                                     << testing::PrintToString(info.description + L" of " + info.source);
}

}  // namespace smh::test
