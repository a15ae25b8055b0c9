#include "hosts/common/host_error.h"

#include "hosts/common/text_encoding.h"
#include "infra/runtime/com_ptr.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/text.h"

#include <oleauto.h>

namespace smh {

namespace {

struct BstrTraits {
  using Type = BSTR;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { SysFreeString(value); }
};

// Empty without any.
std::wstring TakeErrorText() {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Put()) != S_OK || !info) return {};
  ScopedResource<BstrTraits> description;
  if (FAILED(info->GetDescription(description.Put())) || !description) return {};
  return Trim(std::wstring_view(description.Get(), SysStringLen(description.Get())));
}

}  // namespace

HostError::HostError(std::wstring_view message, ExitCode code) : message_(Printable(message)), code_(code) {}

HostError::HostError(std::wstring_view message, std::span<const std::wstring> lines, ExitCode code)
    : HostError(message, code) {
  for (const std::wstring& line : lines) Add(line);
}

void HostError::Add(std::wstring_view line) {
  message_ += L'\n';
  message_ += Printable(line);
}

std::wstring SystemErrorText(HRESULT result) {
  wchar_t buffer[512];
  // The width without a limit leaves out the line breaks in the text.
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
      static_cast<DWORD>(result), 0, buffer, ARRAYSIZE(buffer), nullptr);
  wchar_t number[16];
  wsprintfW(number, L"0x%08X", static_cast<unsigned>(result));
  const std::wstring text = Trim(std::wstring_view(buffer, length));
  return text.empty() ? L"Error " + std::wstring(number) : text + L" (" + number + L")";
}

LibraryFault TakeLibraryFault(LibrarySlot slot, std::optional<HRESULT> result) {
  std::wstring text = TakeErrorText();
  const Refusal* const refusal = FindRefusal(slot, result, text);
  if (refusal != nullptr && refusal->words != nullptr) return {refusal->words, true};
  if (text.empty()) text = SystemErrorText(result.value_or(E_FAIL));
  return {std::move(text), refusal != nullptr};
}

std::wstring LibraryErrorText(LibrarySlot slot, std::optional<HRESULT> result) {
  return TakeLibraryFault(slot, result).text;
}

std::wstring CurrentFaultText() {
  try {
    throw;
  } catch (const HostError& error) {
    return error.Message();
  } catch (const EOSError& error) {
    return SystemErrorText(HRESULT_FROM_WIN32(error.Code()));
  } catch (const Exception& error) {
    return Printable(error.Message());
  } catch (const std::exception& error) {
    return Printable(FromUtf8(error.what()));
  } catch (...) {
    return L"An unknown error.";
  }
}

void CheckResult(HRESULT result, const std::wstring& doing, LibrarySlot slot) {
  if (FAILED(result)) throw HostError(doing + L": " + LibraryErrorText(slot, result));
}

void CheckDone(HRESULT result, const std::wstring& doing, LibrarySlot slot) {
  if (result != S_OK) throw HostError(doing + L": " + LibraryErrorText(slot, result));
}

}  // namespace smh
