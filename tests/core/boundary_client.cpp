#include "core/boundary_client.h"

#include "infra/import_function.h"
#include "support/child_process.h"

#include <oleauto.h>

#include <cstring>
#include <stdexcept>

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
  if (head.references < 1) return testing::AssertionFailure() << head.references << " references";
  if (head.length == 0) return testing::AssertionFailure() << "an empty text that is not null";
  if (std::wcslen(text_) != head.length) {
    return testing::AssertionFailure() << "length " << head.length << " of " << std::wcslen(text_);
  }
  if (!HeapValidate(GetProcessHeap(), 0, BlockOf(text_))) {
    return testing::AssertionFailure() << "not a block of the process heap";
  }
  const SIZE_T needed = 8 + (head.length + 1) * sizeof(wchar_t);
  const SIZE_T size = HeapSize(GetProcessHeap(), 0, BlockOf(text_));
  if (size < needed) return testing::AssertionFailure() << "a block of " << size << " bytes";
  return testing::AssertionSuccess();
}

OutVariant::OutVariant() noexcept {
  VariantInit(&value_);
  value_.vt = VT_UNKNOWN;
  value_.punkVal = reinterpret_cast<IUnknown*>(16);
}

OutVariant::~OutVariant() {
  if (value_.vt == VT_BSTR) SysFreeString(value_.bstrVal);
}

std::wstring OutVariant::Text() const {
  if (value_.vt != VT_BSTR || value_.bstrVal == nullptr) return {};
  return std::wstring(value_.bstrVal, SysStringLen(value_.bstrVal));
}

std::wstring RawItem::Name() const {
  OutText name;
  GetName(name.Put());
  return name.Text();
}

std::wstring RawItem::PropertyText(std::int32_t index) const {
  OutVariant value;
  GetProperty(index, value.Put());
  return value.Text();
}

RawItem RawCollection::Item(std::int32_t index) const {
  RawItem item;
  if (FAILED(GetItem(index, item.Put()))) throw std::runtime_error("no item object");
  return item;
}

std::wstring RawStrings::Text(int text) const {
  OutText out;
  Get(text, out.Put());
  return out.Text();
}

RawCollection RawManager::Items() const {
  RawCollection items;
  if (FAILED(GetStartupItems(items.Put()))) throw std::runtime_error("no collection");
  return items;
}

RawStrings RawManager::Strings() const {
  RawStrings strings;
  if (FAILED(GetStrings(strings.Put()))) throw std::runtime_error("no strings");
  return strings;
}

std::wstring LoadedLibrary::File() {
  return ThisFolder() + L"StartupManagerHelper.dll";
}

LoadedLibrary::LoadedLibrary() : module_(LoadLibraryW(File().c_str())) {
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
  IErrorInfo* info = nullptr;
  if (GetErrorInfo(0, &info) != S_OK || info == nullptr) return std::nullopt;
  BSTR description = nullptr;
  BSTR source = nullptr;
  info->GetDescription(&description);
  info->GetSource(&source);
  info->Release();
  return ErrorInfo{TakeBstr(description), TakeBstr(source)};
}

void PlantErrorInfo() {
  ICreateErrorInfo* made = nullptr;
  IErrorInfo* info = nullptr;
  if (FAILED(CreateErrorInfo(&made))) throw std::runtime_error("no error info");
  wchar_t text[] = L"of an earlier call";
  made->SetDescription(text);
  made->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info));
  SetErrorInfo(0, info);
  info->Release();
  made->Release();
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

testing::AssertionResult IsAssertion(HRESULT result, std::wstring_view unit) {
  if (result != E_UNEXPECTED) return testing::AssertionFailure() << std::hex << "result " << result;
  const std::optional<ErrorInfo> info = TakeErrorInfo();
  if (!info) return testing::AssertionFailure() << "no error info";
  const std::string text(info->description.begin(), info->description.end());
  const std::wstring begin = L"Assertion failure (" + std::wstring(unit) + L", line ";
  std::wstring_view rest = info->description;
  if (!rest.starts_with(begin)) return testing::AssertionFailure() << text;
  rest.remove_prefix(begin.size());
  const std::size_t digits = rest.find_first_not_of(L"0123456789");
  if (digits == 0 || digits == rest.npos || rest.substr(digits) != L")")
    return testing::AssertionFailure() << text;
  if (info->source != L"EAssertionFailed") return testing::AssertionFailure() << "another source";
  return testing::AssertionSuccess();
}

}  // namespace smh::test
