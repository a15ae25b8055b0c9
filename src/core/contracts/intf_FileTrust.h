// The signature service of raterkit.dll: who signed a file, by the system's own verification, and what the
// file holds. Calls are stdcall; slots are numbered after IUnknown's three.
//
// Any thread may call, several at once: no call waits for what another one verifies. A call reads the whole
// file and asks the system, which may take a second for a large one: not on a window's thread. To cancel a
// walk over many files, ask for no further one. The system shows no dialog, asks no network and looks for no
// revocation; its libraries are loaded by the first call.
//
// The path is taken as a 64-bit program takes it, with the redirection of system folders off; "Sysnative"
// stands for the system folder. The file is opened once, with nobody else writing it meanwhile: hash and
// verification are of the same bytes, and what of the product's or the system's functions opens the path
// again finds the same file. A place on the network is waited for two seconds at most; one that does not
// answer is kSignatureUnreadable, and is not asked for again within ten seconds.
//
// What is known is kept, so that a second question is cheap: in memory for ten minutes, by volume, file
// number, size, times and the number of the volume's last change of it; where a volume counts no changes the
// file is read again and its hash compared. On disk, in "signatures.txt" of the data folder, for a day by the
// SHA-256 just taken, and only that a file is broken: nobody makes a file verified, or takes an alarm away,
// by writing there.
#pragma once

#include "core/contracts/boundary_string.h"

#include <unknwn.h>

namespace smh {

// What the system says of a file's signature. Only the first two vouch for the signer that stands beside
// them.
enum SignatureState : std::int32_t {
  kSignatureValid = 0,      // signed within the file, unchanged, by a certificate of a root of this machine
  kSignatureCatalogue = 1,  // the same by a catalogue that is installed here
  kSignatureNone = 2,       // not signed, and in no catalogue of this machine
  kSignatureBroken = 3,     // the file was changed after it was signed, or its signature is damaged
  kSignatureUntrusted =
      4,                  // no root of this machine stands behind the certificate, or it is not for programs
  kSignatureExpired = 5,  // the certificate had expired, and no time stamp says that it was signed before
  kSignatureDistrusted = 6,  // the certificate was revoked, or this machine was told not to trust it
  kSignatureOffline = 7,     // the chain of certificates cannot be built without the network
  kSignatureUnreadable =
      8,  // nothing can be told: no such file, out of reach, being written, or the system failed
};

// The texts are boundary strings, which the caller releases; all that is not known is empty or 0.
struct FileTrustFacts {
  std::uint32_t size;         // in: sizeof(FileTrustFacts); later versions append
  std::int32_t state;         // a SignatureState
  std::int32_t systemCode;    // what the system answered; 0 with kSignatureValid and kSignatureCatalogue
  FILETIME signingTime;       // UTC: of the time stamp, else what the signer says; 0 without either
  BoundaryText organisation;  // "O" of the signer's certificate: who vouches, compare this one
  BoundaryText commonName;    // its "CN", for people only
  BoundaryText sha256;        // of all of the file, 64 lower-case hexadecimal digits; empty for unreadable
};

struct IFileTrust : IUnknown {
  static constexpr wchar_t kId[] = L"{37AF2B8E-2941-4774-936D-46AFCD54C0CF}";
  static constexpr wchar_t kLibrary[] = L"raterkit.dll";
  static constexpr wchar_t kLocator[] = L"raterkit.dll::File Trust";
  static constexpr GUID iid = {0x37AF2B8E, 0x2941, 0x4774, {0x93, 0x6D, 0x46, 0xAF, 0xCD, 0x54, 0xC0, 0xCF}};

  // 1: `path` is full. S_OK for every state; a failure, with kSignatureUnreadable, when memory runs out, and
  // E_INVALIDARG, with nothing written, for a `facts` that is null or has another size.
  virtual HRESULT STDMETHODCALLTYPE Verify(const wchar_t* path, FileTrustFacts* facts) = 0;
  // 2: the organisation that the rating line names which rates such a file trusted: the line of the company
  // of its version record, else that of its name without folder. Empty without such a line, and when that
  // names none: then nothing proves the rating. Compare it exactly.
  virtual HRESULT STDMETHODCALLTYPE GetTrustedSigner(const wchar_t* company, const wchar_t* name,
                                                     BoundaryText* organisation) = 0;
};

}  // namespace smh
