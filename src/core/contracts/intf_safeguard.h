// The backup service of guardkit.dll: performs changes of the registry and of files, and records them for
// undo. Calls are stdcall; slots are numbered after IUnknown's three. Results are Win32 status codes, 0 for
// success, unless a slot says otherwise.
//
// Every change is written into a journal before it is made (intf_journal.h takes changes back). What cannot
// be written down is not made: a full disk or a journal held by another checkpoint for more than ten seconds
// (ERROR_LOCK_VIOLATION) refuses the call before it begins. Every slot may be called from any thread.
//
// The last look: directly before the system's call what stands there is read once more and compared with what
// was recorded as the state before it. When it is not that to the byte any more, another program was here:
// nothing is changed, and the answer is ERROR_REVISION_MISMATCH. This holds for every write, deletion, move
// and key made. A file is compared and then moved or deleted by one handle, which nobody may write to
// meanwhile. What is left is the moment between that look and the call right behind it: of values, of keys
// that are deleted, and of files that are overwritten.
#pragma once

#include "core/contracts/boundary_string.h"

#include <unknwn.h>

namespace smh {

// Registry changes. Keys that come in stay the caller's, who closes those that come out by slot 12.
struct IRegAccess : IUnknown {
  static constexpr GUID iid = {0x5C2990D5, 0x37CD, 0x4FE8, {0x8E, 0xC4, 0xA2, 0x37, 0x23, 0xA7, 0xD4, 0xF2}};

  // 1: as RegCreateKeyExW; `disposition` is a 32-bit word or null.
  virtual LSTATUS STDMETHODCALLTYPE CreateKey(HKEY parent, const wchar_t* subKey, DWORD* disposition,
                                              HKEY* key, DWORD reserved, REGSAM access, DWORD unused1,
                                              DWORD unused2, DWORD unused3) = 0;
  // 2: as RegOpenKeyExW.
  virtual LSTATUS STDMETHODCALLTYPE OpenKey(HKEY parent, const wchar_t* subKey, HKEY* key, REGSAM access,
                                            DWORD unused) = 0;
  // 3: E_NOTIMPL, as every reserved slot.
  virtual HRESULT STDMETHODCALLTYPE Reserved3() = 0;
  // 4: as RegDeleteKeyExW, for a key without subkeys.
  virtual LSTATUS STDMETHODCALLTYPE DeleteKey(HKEY parent, const wchar_t* subKey, REGSAM viewBits,
                                              DWORD unused) = 0;
  // 5: as RegSetValueExW; `size` in bytes, `type` any number, also one that the system does not know. The key
  // must be open for reading too, here and in 6. A value that has that type and data already is not touched.
  virtual LSTATUS STDMETHODCALLTYPE SetValue(HKEY key, const wchar_t* name, DWORD size, const void* data,
                                             DWORD type, DWORD unused) = 0;
  // 6: as RegDeleteValueW.
  virtual LSTATUS STDMETHODCALLTYPE DeleteValue(HKEY key, const wchar_t* name) = 0;
  // 7-11: E_NOTIMPL.
  virtual HRESULT STDMETHODCALLTYPE Reserved7() = 0;
  virtual HRESULT STDMETHODCALLTYPE Reserved8() = 0;
  virtual HRESULT STDMETHODCALLTYPE Reserved9() = 0;
  virtual HRESULT STDMETHODCALLTYPE Reserved10() = 0;
  virtual HRESULT STDMETHODCALLTYPE Reserved11() = 0;
  // 12: as RegCloseKey.
  virtual LSTATUS STDMETHODCALLTYPE CloseKey(HKEY key) = 0;
};

// The caller's own part of the last look: it knows what else has to stand there for the change to be right.
struct IChangeCheck {
  // A Win32 status. With any but 0 nothing is changed, and the slot that was called answers it; with
  // ERROR_SHARING_VIOLATION, or when the change meets that, it is asked again for a second. Called under the
  // journal's lock: it looks and neither changes anything through the service nor waits. Raises nothing.
  virtual LSTATUS STDMETHODCALLTYPE Check() = 0;

 protected:
  ~IChangeCheck() = default;
};

// Checkpoints and file changes. Paths may be relative to the current folder.
struct ISafeguard : IUnknown {
  static constexpr wchar_t kId[] = L"{5C2990D5-37CD-4FE8-8EC4-A23723A7D4F1}";
  static constexpr wchar_t kLibrary[] = L"guardkit.dll";
  static constexpr wchar_t kLocator[] = L"guardkit.dll::safeguard";
  static constexpr GUID iid = {0x5C2990D5, 0x37CD, 0x4FE8, {0x8E, 0xC4, 0xA2, 0x37, 0x23, 0xA7, 0xD4, 0xF1}};

  // 1: an HRESULT; one reference for the caller.
  virtual HRESULT STDMETHODCALLTYPE GetRegAccess(IRegAccess** access) = 0;
  // 2, 3: a checkpoint gathers the changes of this thread between them under one title; begins nest, and the
  // outermost opens and names the checkpoint; an inner one is only where slots 7 and 8 count from. Changes
  // outside a checkpoint get one each. Only the outermost begin may be refused; a refused one has no end. The
  // thread holds the journal until its last end. 3: ERROR_INVALID_FUNCTION without a begin.
  virtual LSTATUS STDMETHODCALLTYPE BeginCheckpoint(const wchar_t* title) = 0;
  virtual LSTATUS STDMETHODCALLTYPE EndCheckpoint() = 0;
  // 4: fails with ERROR_ALREADY_EXISTS or ERROR_FILE_EXISTS when `to` exists. Here and in 5 and 6 the caller
  // may have `from` or `file` open, with GENERIC_READ and DELETE at most, if it shares reading and deleting;
  // it is the file itself that goes to `to`, handle and all.
  virtual LSTATUS STDMETHODCALLTYPE MoveRecordedFile(const wchar_t* from, const wchar_t* to) = 0;
  // 5: keeps the content for an undo. ERROR_FILE_NOT_FOUND when there is no such file, ERROR_ACCESS_DENIED
  // for one that is read-only. The name is free when this returns; the file itself may live on elsewhere on
  // its volume until the checkpoint ends, so that putting it back needs no room.
  virtual LSTATUS STDMETHODCALLTYPE DeleteRecordedFile(const wchar_t* file) = 0;
  // 6: `overwrite` is a boolean of which the low byte counts. An overwritten file is replaced at once or not
  // at all.
  virtual LSTATUS STDMETHODCALLTYPE CopyRecordedFile(const wchar_t* from, const wchar_t* to,
                                                     BOOL overwrite) = 0;
  // 7: the change that this thread's innermost begin is for did not come about. What stands of the steps
  // since that begin, those of ended inner ones included, is taken back, the last one first, each only where
  // the state that it left is still there, and needs no room on the disk; once something cannot be taken
  // back, nothing is deleted or overwritten any more. ERROR_SUCCESS when nothing stands any more; otherwise
  // the status of the first step that could not be taken back. Until the end that belongs to that begin what
  // is changed is compared but not recorded, for a caller that puts the rest back itself; another call looks
  // again. ERROR_INVALID_FUNCTION without a begin. A file that the caller holds open without sharing its
  // deletion cannot be taken back.
  //
  // The steps stay in the journal, and an undo compares each with what is there: nothing is done for those
  // that were taken back. What came before an inner begin, and comes behind its end, is recorded as ever. A
  // checkpoint of which nothing else was done ends as failed (CheckpointState::kFailed), or, when its end
  // cannot be written and nothing of it stands, leaves no trace; any other ends as done.
  virtual LSTATUS STDMETHODCALLTYPE FailCheckpoint() = 0;
  // 8: from now on `check` is asked on this thread as part of the last look of every change, until the end
  // that belongs to its innermost begin, inner checkpoints that begin meanwhile included; from that end on
  // the check that was asked before is asked again. Null asks nobody. It is borrowed until then. Slot 7 does
  // not ask it. ERROR_INVALID_FUNCTION without a begin.
  virtual LSTATUS STDMETHODCALLTYPE SetChangeCheck(IChangeCheck* check) = 0;
  // 9: what is written in this thread's innermost level from here on, inner ones included, is a copy of that
  // value, of that key (`name` null), or of the file at `path` (`key` null); of nothing when both are null.
  // It is read now; ERROR_FILE_NOT_FOUND, and a copy of nothing, when it is not there. `key` is the caller's
  // and open for KEY_READ. An undo that would remove what was written looks whether the source stands as it
  // was: the only copy stays. ERROR_INVALID_FUNCTION without a begin.
  virtual LSTATUS STDMETHODCALLTYPE SetSource(HKEY key, const wchar_t* name, const wchar_t* path) = 0;
};

}  // namespace smh
