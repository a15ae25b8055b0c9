#include "tests/support/recording_safeguard.h"

namespace smh::test {

namespace {

std::wstring InQuotes(const wchar_t* text) {
  return L"\"" + std::wstring(TextArgument(text)) + L"\"";
}

LSTATUS LastErrorUnless(BOOL success) {
  return success ? ERROR_SUCCESS : static_cast<LSTATUS>(GetLastError());
}

}  // namespace

class RecordingSafeguard::RegAccess : public ComObject<IRegAccess> {
 public:
  explicit RegAccess(RecordingSafeguard* owner) : owner_(owner) {}

  LSTATUS STDMETHODCALLTYPE CreateKey(HKEY parent, const wchar_t* subKey, DWORD* disposition, HKEY* key,
                                      DWORD, REGSAM access, DWORD, DWORD, DWORD) override {
    return owner_->Change(L"CreateKey " + InQuotes(subKey), [&] {
      return RegCreateKeyExW(parent, subKey, 0, nullptr, 0, access, nullptr, key, disposition);
    });
  }
  LSTATUS STDMETHODCALLTYPE OpenKey(HKEY parent, const wchar_t* subKey, HKEY* key, REGSAM access,
                                    DWORD) override {
    return owner_->Perform(L"OpenKey " + InQuotes(subKey),
                           [&] { return RegOpenKeyExW(parent, subKey, 0, access, key); });
  }
  HRESULT STDMETHODCALLTYPE Reserved3() override { return E_NOTIMPL; }
  LSTATUS STDMETHODCALLTYPE DeleteKey(HKEY parent, const wchar_t* subKey, REGSAM viewBits, DWORD) override {
    return owner_->Change(L"DeleteKey " + InQuotes(subKey),
                          [&] { return RegDeleteKeyExW(parent, subKey, viewBits, 0); });
  }
  LSTATUS STDMETHODCALLTYPE SetValue(HKEY key, const wchar_t* name, DWORD size, const void* data, DWORD type,
                                     DWORD) override {
    return owner_->Change(L"SetValue " + InQuotes(name), [&] {
      return RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), size);
    });
  }
  LSTATUS STDMETHODCALLTYPE DeleteValue(HKEY key, const wchar_t* name) override {
    return owner_->Change(L"DeleteValue " + InQuotes(name), [&] { return RegDeleteValueW(key, name); });
  }
  HRESULT STDMETHODCALLTYPE Reserved7() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reserved8() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reserved9() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reserved10() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reserved11() override { return E_NOTIMPL; }
  LSTATUS STDMETHODCALLTYPE CloseKey(HKEY key) override {
    return owner_->Perform(L"CloseKey", [&] { return RegCloseKey(key); });
  }

 private:
  ComPtr<RecordingSafeguard> owner_;
};

std::vector<std::wstring> RecordingSafeguard::Lines() const {
  const std::scoped_lock lock(lock_);
  return lines_;
}

void RecordingSafeguard::Clear() {
  const std::scoped_lock lock(lock_);
  lines_.clear();
  rules_.clear();
  hook_ = nullptr;
  check_ = nullptr;
}

void RecordingSafeguard::Answer(std::wstring part, LSTATUS status, int times) {
  const std::scoped_lock lock(lock_);
  rules_.push_back({std::move(part), status, times});
}

void RecordingSafeguard::Before(std::function<void(const std::wstring&)> hook) {
  const std::scoped_lock lock(lock_);
  hook_ = std::move(hook);
}

std::optional<LSTATUS> RecordingSafeguard::Record(const std::wstring& line) {
  std::function<void(const std::wstring&)> hook;
  std::optional<LSTATUS> told;
  {
    const std::scoped_lock lock(lock_);
    lines_.push_back(line);
    for (Rule& rule : rules_) {
      if (told || rule.times == 0 || line.find(rule.part) == std::wstring::npos) continue;
      --rule.times;
      told = rule.status;
    }
    hook = hook_;
  }
  if (hook) hook(line);
  return told;
}

HRESULT RecordingSafeguard::GetRegAccess(IRegAccess** access) {
  const std::optional<LSTATUS> told = Record(L"GetRegAccess");
  *access = nullptr;
  if (told) return HRESULT_FROM_WIN32(static_cast<DWORD>(*told));
  *access = new RegAccess(this);
  return S_OK;
}

LSTATUS RecordingSafeguard::BeginCheckpoint(const wchar_t* title) {
  return Record(L"BeginCheckpoint " + InQuotes(title)).value_or(ERROR_SUCCESS);
}

LSTATUS RecordingSafeguard::EndCheckpoint() {
  {
    const std::scoped_lock lock(lock_);
    check_ = nullptr;
    hasSource_ = false;
  }
  return Record(L"EndCheckpoint").value_or(ERROR_SUCCESS);
}

LSTATUS RecordingSafeguard::MoveRecordedFile(const wchar_t* from, const wchar_t* to) {
  return Change(L"MoveFile " + InQuotes(from) + L' ' + InQuotes(to),
                [&] { return LastErrorUnless(MoveFileW(from, to)); });
}

LSTATUS RecordingSafeguard::DeleteRecordedFile(const wchar_t* file) {
  return Change(L"DeleteFile " + InQuotes(file), [&] { return LastErrorUnless(DeleteFileW(file)); });
}

LSTATUS RecordingSafeguard::CopyRecordedFile(const wchar_t* from, const wchar_t* to, BOOL overwrite) {
  const bool replace = (overwrite & 0xFF) != 0;
  return Change(
      L"CopyFile " + InQuotes(from) + L' ' + InQuotes(to) + L" overwrite " + (replace ? L'1' : L'0'),
      [&] { return LastErrorUnless(CopyFileW(from, to, !replace)); });
}

LSTATUS RecordingSafeguard::FailCheckpoint() {
  return Record(L"FailCheckpoint").value_or(ERROR_NOT_SUPPORTED);
}

LSTATUS RecordingSafeguard::SetChangeCheck(IChangeCheck* check) {
  const std::scoped_lock lock(lock_);
  check_ = check;
  return ERROR_SUCCESS;
}

LSTATUS RecordingSafeguard::SetSource(HKEY key, const wchar_t*, const wchar_t* path) {
  const std::scoped_lock lock(lock_);
  hasSource_ = key != nullptr || path != nullptr;
  return ERROR_SUCCESS;
}

bool RecordingSafeguard::HasSource() const {
  const std::scoped_lock lock(lock_);
  return hasSource_;
}

LSTATUS RecordingSafeguard::AskCheck() const {
  IChangeCheck* check = nullptr;
  {
    const std::scoped_lock lock(lock_);
    check = check_;
  }
  return check == nullptr ? ERROR_SUCCESS : check->Check();
}

}  // namespace smh::test
