// A link file read whole into memory.
#pragma once

#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace smh {

// A failed access to a file, with the system's code.
class EFileStreamError : public Exception {
 public:
  EFileStreamError(std::wstring message, DWORD code) : Exception(std::move(message)), code_(code) {}
  const wchar_t* ClassName() const noexcept override { return L"EFileStreamError"; }
  HRESULT Result() const noexcept override { return HRESULT_FROM_WIN32(code_); }
  DWORD Code() const noexcept { return code_; }

 private:
  DWORD code_;
};

// "Cannot open file "%s". %s"
class EFOpenError : public EFileStreamError {
 public:
  EFOpenError(std::wstring_view fileName, DWORD code);
  const wchar_t* ClassName() const noexcept override { return L"EFOpenError"; }
};

// Open for reading until it goes out of scope: others may not write to it meanwhile, but move or delete it.
class LinkFile {
 public:
  // Raises EFOpenError.
  explicit LinkFile(const std::wstring& fileName);

  // As it was when it was opened.
  const FileStamp& Stamp() const noexcept { return stamp_; }
  // The whole file, in one read. Raises EOSError.
  std::unique_ptr<std::byte[]> ReadAll() const;

 private:
  ScopedHandle file_;
  FileStamp stamp_;
};

}  // namespace smh
