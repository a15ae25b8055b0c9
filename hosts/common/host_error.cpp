#include "hosts/common/host_error.h"

#include "hosts/common/language.h"
#include "hosts/common/text_encoding.h"
#include "hosts/common/texts/failure_texts.h"
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

// The system's text; in its own language where it has none in that one.
std::wstring SystemWords(HRESULT result, Language language) {
  for (const DWORD id : {DWORD{SystemLanguage(language)}, DWORD{0}}) {
    wchar_t buffer[512];
    // The width without a limit leaves out the line breaks in the text.
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
        static_cast<DWORD>(result), id, buffer, ARRAYSIZE(buffer), nullptr);
    std::wstring text = Trim(std::wstring_view(buffer, length));
    if (!text.empty()) return text;
  }
  return {};
}

}  // namespace

HostError::HostError(const Phrase& message, ExitCode code)
    : message_(PrintablePhrase(message)), code_(code) {}

HostError::HostError(const Phrase& message, std::span<const std::wstring> lines, ExitCode code)
    : HostError(message, code) {
  for (const std::wstring& line : lines) Add(line);
}

void HostError::Add(const Phrase& line) {
  message_.Append(L"\n", PrintablePhrase(line));
}

Phrase SystemErrorText(HRESULT result) {
  wchar_t number[16];
  wsprintfW(number, L"0x%08X", static_cast<unsigned>(result));
  const Phrase text(SystemWords(result, Language::kEnglish), SystemWords(result, CurrentLanguage()));
  return text.IsEmpty() ? Say(texts::kErrorNumber, number) : Say(texts::kSystemError, text, number);
}

LibraryFault TakeLibraryFault(LibrarySlot slot, std::optional<HRESULT> result) {
  std::wstring text = TakeErrorText();
  const Refusal* const refusal = FindRefusal(slot, result, text);
  if (refusal != nullptr && refusal->words != nullptr) return {*refusal->words, true};
  if (text.empty()) return {SystemErrorText(result.value_or(E_FAIL)), refusal != nullptr};
  return {text, refusal != nullptr};
}

Phrase LibraryErrorText(LibrarySlot slot, std::optional<HRESULT> result) {
  return TakeLibraryFault(slot, result).text;
}

Phrase CurrentFault() {
  try {
    throw;
  } catch (const HostError& error) {
    return error.Fault();
  } catch (const EOSError& error) {
    return SystemErrorText(HRESULT_FROM_WIN32(error.Code()));
  } catch (const Exception& error) {
    return Printable(error.Message());
  } catch (const std::exception& error) {
    return Printable(FromUtf8(error.what()));
  } catch (...) {
    return texts::kUnknownError;
  }
}

void RaiseFailure(HRESULT result, const Phrase& doing, LibrarySlot slot) {
  throw HostError(Say(texts::kFailedFor, doing, LibraryErrorText(slot, result)));
}

}  // namespace smh
