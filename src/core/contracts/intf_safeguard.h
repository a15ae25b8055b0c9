// The backup service of guardkit.dll: performs changes of the registry and of files, and records them for
// undo. Calls are stdcall; slots are numbered after IUnknown's three. Results are Win32 status codes, 0 for
// success, unless a slot says otherwise.
//
// Every change is written into a journal before it is made (intf_journal.h takes changes back). What cannot
// be written down is not made: a full disk or a journal held by another checkpoint for more than ten seconds
// (ERROR_LOCK_VIOLATION) refuses the call before it begins. Every slot may be called from any thread.
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
  // 5: as RegSetValueExW; `size` in bytes. The key must be open for reading too, here and in 6.
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

// Checkpoints and file changes. Paths may be relative to the current folder.
struct ISafeguard : IUnknown {
  static constexpr wchar_t kId[] = L"{5C2990D5-37CD-4FE8-8EC4-A23723A7D4F1}";
  static constexpr wchar_t kLibrary[] = L"guardkit.dll";
  static constexpr wchar_t kLocator[] = L"guardkit.dll::safeguard";
  static constexpr GUID iid = {0x5C2990D5, 0x37CD, 0x4FE8, {0x8E, 0xC4, 0xA2, 0x37, 0x23, 0xA7, 0xD4, 0xF1}};

  // 1: an HRESULT; one reference for the caller.
  virtual HRESULT STDMETHODCALLTYPE GetRegAccess(IRegAccess** access) = 0;
  // 2, 3: a checkpoint gathers the changes of this thread between them under one title; begins nest, and the
  // outermost counts. Changes outside a checkpoint get one each. Only the outermost begin may be refused; a
  // refused one has no end. The thread holds the journal until its last end. 3: ERROR_INVALID_FUNCTION
  // without a begin.
  virtual LSTATUS STDMETHODCALLTYPE BeginCheckpoint(const wchar_t* title) = 0;
  virtual LSTATUS STDMETHODCALLTYPE EndCheckpoint() = 0;
  // 4: fails with ERROR_ALREADY_EXISTS or ERROR_FILE_EXISTS when `to` exists.
  virtual LSTATUS STDMETHODCALLTYPE MoveRecordedFile(const wchar_t* from, const wchar_t* to) = 0;
  // 5: keeps the content for an undo. ERROR_FILE_NOT_FOUND when there is no such file.
  virtual LSTATUS STDMETHODCALLTYPE DeleteRecordedFile(const wchar_t* file) = 0;
  // 6: `overwrite` is a boolean of which the low byte counts. An overwritten file is replaced at once or not
  // at all.
  virtual LSTATUS STDMETHODCALLTYPE CopyRecordedFile(const wchar_t* from, const wchar_t* to,
                                                     BOOL overwrite) = 0;
};

}  // namespace smh
