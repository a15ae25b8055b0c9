// The system's verification of a file's signature. Any thread may ask, several at once; no lock is held.
#pragma once

#include "infra/runtime/critical_section.h"
#include "infra/runtime/lazy.h"
#include "siblings/raterkit/signature.h"

#include <windows.h>
#include <wincrypt.h>  // before what the sources include

#include <string>

namespace smh {

// A stand-in for it in tests shows what not every system can.
class SystemTrust {
 public:
  SystemTrust() = default;
  SystemTrust(const SystemTrust&) = delete;
  SystemTrust& operator=(const SystemTrust&) = delete;
  virtual ~SystemTrust() = default;

  // By the signature within the file. `file` is open for reading with nobody else writing it; `path` names it
  // for those parts of the system that open it again. A function of the system that is missing is
  // TRUST_E_SYSTEM_ERROR. Raises std::bad_alloc.
  virtual SystemAnswer VerifyFile(HANDLE file, const std::wstring& path) = 0;
  // By the catalogues of this machine, the same; TRUST_E_NOSIGNATURE when none lists the file.
  virtual SystemAnswer VerifyByCatalogue(HANDLE file, const std::wstring& path) = 0;
};

// wintrust.dll and crypt32.dll, loaded from the system folder with the first question and never freed,
// because what they keep is the process's. Without dialogs, without the network, without revocation lists.
// Stricter than the system in one point: the root must be known to the whole machine. A user's own store is
// written to by any program of that user.
class WindowsTrust final : public SystemTrust {
 public:
  // Loads nothing yet.
  WindowsTrust() noexcept;
  ~WindowsTrust() override;

  SystemAnswer VerifyFile(HANDLE file, const std::wstring& path) override;
  SystemAnswer VerifyByCatalogue(HANDLE file, const std::wstring& path) override;

 private:
  struct Functions;

  const Functions& System();

  // A leaf but for the loader's lock: held while the libraries are loaded, by the first call only.
  CriticalSection lock_;
  Lazy<Functions> functions_;
};

// A library of the system's own folder, by its file name, with all that it needs from there; null when there
// is none. Stays loaded.
HMODULE LoadFromSystemFolder(const wchar_t* file) noexcept;

}  // namespace smh
