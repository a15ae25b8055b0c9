// A backup service that writes down every call as a line of text, in order, and then performs it straight
// through the platform, or answers as a test told it to:
//   GetRegAccess / CreateKey "sub" / OpenKey "sub" / DeleteKey "sub" / CloseKey
//   SetValue "name" / DeleteValue "name"
//   BeginCheckpoint "title" / EndCheckpoint / FailCheckpoint
//   MoveFile "a" "b" / DeleteFile "a" / CopyFile "a" "b" overwrite 1
// It records nothing for an undo: FailCheckpoint takes nothing back and says so. The check of a checkpoint is
// asked before every change in it, without a line; sources leave none either, but can be asked for.
#pragma once

#include "core/contracts/com_object.h"
#include "core/contracts/intf_safeguard.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace smh::test {

class RecordingSafeguard : public ComObject<ISafeguard> {
 public:
  std::vector<std::wstring> Lines() const;
  // Forgets calls, answers and hook.
  void Clear();
  // The next `times` calls whose line contains `part` are not performed and answer `status`; 0 pretends.
  void Answer(std::wstring part, LSTATUS status, int times = 1);
  // Whether what is written now counts as a copy of something.
  bool HasSource() const;
  // Called with each line before the call is performed; may change the registry underneath.
  void Before(std::function<void(const std::wstring& line)> hook);

  HRESULT STDMETHODCALLTYPE GetRegAccess(IRegAccess** access) override;
  LSTATUS STDMETHODCALLTYPE BeginCheckpoint(const wchar_t* title) override;
  LSTATUS STDMETHODCALLTYPE EndCheckpoint() override;
  LSTATUS STDMETHODCALLTYPE MoveRecordedFile(const wchar_t* from, const wchar_t* to) override;
  LSTATUS STDMETHODCALLTYPE DeleteRecordedFile(const wchar_t* file) override;
  LSTATUS STDMETHODCALLTYPE CopyRecordedFile(const wchar_t* from, const wchar_t* to, BOOL overwrite) override;
  LSTATUS STDMETHODCALLTYPE FailCheckpoint() override;
  LSTATUS STDMETHODCALLTYPE SetChangeCheck(IChangeCheck* check) override;
  LSTATUS STDMETHODCALLTYPE SetSource(HKEY key, const wchar_t* name, const wchar_t* path) override;

 private:
  class RegAccess;
  struct Rule {
    std::wstring part;
    LSTATUS status;
    int times;
  };

  // Writes the line down; the rule's status when one applies.
  std::optional<LSTATUS> Record(const std::wstring& line);
  template <typename Operation>
  LSTATUS Perform(const std::wstring& line, Operation operation) {
    const std::optional<LSTATUS> told = Record(line);
    return told ? *told : operation();
  }
  // The same for what changes something: the checkpoint's check is asked in between.
  template <typename Operation>
  LSTATUS Change(const std::wstring& line, Operation operation) {
    return Perform(line, [&] {
      const LSTATUS refused = AskCheck();
      return refused != ERROR_SUCCESS ? refused : operation();
    });
  }
  LSTATUS AskCheck() const;

  mutable std::mutex lock_;
  std::vector<std::wstring> lines_;
  std::vector<Rule> rules_;
  std::function<void(const std::wstring&)> hook_;
  IChangeCheck* check_ = nullptr;
  bool hasSource_ = false;
};

}  // namespace smh::test
