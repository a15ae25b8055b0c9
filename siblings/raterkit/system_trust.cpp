#include "siblings/raterkit/system_trust.h"

#include "infra/runtime/import_function.h"

#include <mscat.h>
#include <softpub.h>
#include <wintrust.h>

#include <iterator>
#include <span>
#include <string_view>
#include <vector>

namespace smh {

namespace {

constexpr DWORD kEncoding = X509_ASN_ENCODING | PKCS_7_ASN_ENCODING;
// Not in every toolchain's headers: weak hashes count as none.
constexpr DWORD kRefuseMd2AndMd4 = 0x2000;

// All functions; null where this system has none.
struct TrustFunctions {
  TrustFunctions() noexcept {
    const HMODULE wintrust = LoadFromSystemFolder(L"wintrust.dll");
    const HMODULE crypt = LoadFromSystemFolder(L"crypt32.dll");
    const auto find = [](auto& function, HMODULE module, const char* exported) {
      function = ImportFunction<std::remove_reference_t<decltype(function)>>(module, exported);
    };
    find(verify, wintrust, "WinVerifyTrust");
    find(provider, wintrust, "WTHelperProvDataFromStateData");
    find(signer, wintrust, "WTHelperGetProvSignerFromChain");
    find(acquire, wintrust, "CryptCATAdminAcquireContext");
    find(acquire2, wintrust, "CryptCATAdminAcquireContext2");
    find(hash, wintrust, "CryptCATAdminCalcHashFromFileHandle");
    find(hash2, wintrust, "CryptCATAdminCalcHashFromFileHandle2");
    find(enumerate, wintrust, "CryptCATAdminEnumCatalogFromHash");
    find(describe, wintrust, "CryptCATCatalogInfoFromContext");
    find(releaseCatalogue, wintrust, "CryptCATAdminReleaseCatalogContext");
    find(release, wintrust, "CryptCATAdminReleaseContext");
    find(name, crypt, "CertGetNameStringW");
    find(openStore, crypt, "CertOpenStore");
    find(closeStore, crypt, "CertCloseStore");
    find(findCertificate, crypt, "CertFindCertificateInStore");
    find(freeCertificate, crypt, "CertFreeCertificateContext");
    find(decode, crypt, "CryptDecodeObjectEx");
  }

  bool CanVerify() const noexcept {
    return verify != nullptr && provider != nullptr && signer != nullptr && name != nullptr &&
           openStore != nullptr && closeStore != nullptr && findCertificate != nullptr &&
           freeCertificate != nullptr && decode != nullptr;
  }
  bool CanUseCatalogues() const noexcept {
    return acquire != nullptr && hash != nullptr && enumerate != nullptr && describe != nullptr &&
           releaseCatalogue != nullptr && release != nullptr;
  }

  decltype(&WinVerifyTrust) verify;
  decltype(&WTHelperProvDataFromStateData) provider;
  decltype(&WTHelperGetProvSignerFromChain) signer;
  decltype(&CryptCATAdminAcquireContext) acquire;
  decltype(&CryptCATAdminAcquireContext2) acquire2;
  decltype(&CryptCATAdminCalcHashFromFileHandle) hash;
  decltype(&CryptCATAdminCalcHashFromFileHandle2) hash2;
  decltype(&CryptCATAdminEnumCatalogFromHash) enumerate;
  decltype(&CryptCATCatalogInfoFromContext) describe;
  decltype(&CryptCATAdminReleaseCatalogContext) releaseCatalogue;
  decltype(&CryptCATAdminReleaseContext) release;
  decltype(&CertGetNameStringW) name;
  decltype(&CertOpenStore) openStore;
  decltype(&CertCloseStore) closeStore;
  decltype(&CertFindCertificateInStore) findCertificate;
  decltype(&CertFreeCertificateContext) freeCertificate;
  decltype(&CryptDecodeObjectEx) decode;
};

// As of Windows 8; earlier versions look at the first part only.
struct CatalogueMember {
  WINTRUST_CATALOG_INFO info;
  HCATADMIN admin;
};

std::wstring NameIn(const TrustFunctions& system, PCCERT_CONTEXT certificate, const char* attribute) {
  const auto read = [&](wchar_t* text, DWORD units) {
    return system.name(certificate, CERT_NAME_ATTR_TYPE, 0, const_cast<char*>(attribute), text, units);
  };
  std::wstring text(read(nullptr, 0), L'\0');
  if (text.size() <= 1) return {};
  read(text.data(), static_cast<DWORD>(text.size()));
  text.pop_back();
  // Who writes a NUL there wants the rest to be overlooked.
  return text.find(L'\0') == std::wstring::npos ? text : std::wstring();
}

bool HasRoot(const TrustFunctions& system, DWORD place, PCCERT_CONTEXT root) noexcept {
  const HCERTSTORE store =
      system.openStore(CERT_STORE_PROV_SYSTEM_W, 0, 0,
                       place | CERT_STORE_OPEN_EXISTING_FLAG | CERT_STORE_READONLY_FLAG, L"Root");
  if (store == nullptr) return false;
  const PCCERT_CONTEXT found = system.findCertificate(store, kEncoding, 0, CERT_FIND_EXISTING, root, nullptr);
  if (found != nullptr) system.freeCertificate(found);
  system.closeStore(store, 0);
  return found != nullptr;
}

// Those of the machine's policy are among the machine's on some systems, and stand by themselves on others.
bool IsRootOfMachine(const TrustFunctions& system, PCCERT_CONTEXT root) noexcept {
  return HasRoot(system, CERT_SYSTEM_STORE_LOCAL_MACHINE, root) ||
         HasRoot(system, CERT_SYSTEM_STORE_LOCAL_MACHINE_GROUP_POLICY, root);
}

// Of the time stamp; else what the signer says, which the signature covers.
FILETIME SigningTime(const TrustFunctions& system, const CRYPT_PROVIDER_SGNR& signer) noexcept {
  FILETIME time = {};
  if (signer.csCounterSigners > 0 && signer.pasCounterSigners != nullptr)
    return signer.pasCounterSigners[0].sftVerifyAsOf;
  if (signer.psSigner == nullptr) return time;
  const CRYPT_ATTRIBUTES& attributes = signer.psSigner->AuthAttrs;
  for (const CRYPT_ATTRIBUTE& row : std::span(attributes.rgAttr, attributes.cAttr)) {
    if (row.cValue == 0 || std::string_view(row.pszObjId) != szOID_RSA_signingTime) continue;
    DWORD bytes = sizeof(time);
    if (system.decode(kEncoding, szOID_RSA_signingTime, row.rgValue[0].pbData, row.rgValue[0].cbData, 0,
                      nullptr, &time, &bytes) == FALSE) {
      time = {};
    }
    break;
  }
  return time;
}

void TakeSigner(const TrustFunctions& system, HANDLE state, SystemAnswer& answer) {
  CRYPT_PROVIDER_DATA* const provider = system.provider(state);
  const CRYPT_PROVIDER_SGNR* const signer =
      provider == nullptr ? nullptr : system.signer(provider, 0, FALSE, 0);
  const bool hasChain = signer != nullptr && signer->csCertChain > 0 && signer->pasCertChain != nullptr &&
                        signer->pasCertChain[0].pCert != nullptr;
  if (!hasChain) {
    if (answer.code == 0) answer.code = TRUST_E_NO_SIGNER_CERT;
    return;
  }
  answer.organisation = NameIn(system, signer->pasCertChain[0].pCert, szOID_ORGANIZATION_NAME);
  answer.commonName = NameIn(system, signer->pasCertChain[0].pCert, szOID_COMMON_NAME);
  answer.signingTime = SigningTime(system, *signer);
  const PCCERT_CONTEXT root = signer->pasCertChain[signer->csCertChain - 1].pCert;
  if (answer.code == 0 && (root == nullptr || !IsRootOfMachine(system, root)))
    answer.code = CERT_E_UNTRUSTEDROOT;
}

// Asks, and lets go of the state that the answer has.
SystemAnswer Ask(const TrustFunctions& system, WINTRUST_DATA& question) {
  GUID action = WINTRUST_ACTION_GENERIC_VERIFY_V2;
  const auto asksNobody = static_cast<HWND>(INVALID_HANDLE_VALUE);
  question.cbStruct = sizeof(question);
  question.dwUIChoice = WTD_UI_NONE;
  question.fdwRevocationChecks = WTD_REVOKE_NONE;
  question.dwStateAction = WTD_STATEACTION_VERIFY;
  question.dwProvFlags = WTD_CACHE_ONLY_URL_RETRIEVAL | WTD_REVOCATION_CHECK_NONE | kRefuseMd2AndMd4;
  struct State {
    ~State() {
      question.dwStateAction = WTD_STATEACTION_CLOSE;
      system.verify(asksNobody, &action, &question);
    }
    const TrustFunctions& system;
    HWND asksNobody;
    GUID& action;
    WINTRUST_DATA& question;
  };
  SystemAnswer answer;
  const State state{system, asksNobody, action, question};
  answer.code = system.verify(asksNobody, &action, &question);
  if (question.hWVTStateData != nullptr && !IsUnsigned(answer.code)) {
    TakeSigner(system, question.hWVTStateData, answer);
  } else if (answer.code == 0) {
    answer.code = TRUST_E_NO_SIGNER_CERT;
  }
  return answer;
}

// Catalogues list files by one kind of hash each.
class Catalogues {
 public:
  // `algorithm` is null for the one of all versions.
  Catalogues(const TrustFunctions& system, const wchar_t* algorithm) noexcept : system_(system) {
    const bool is256 = algorithm != nullptr;
    if (is256 && (system.acquire2 == nullptr || system.hash2 == nullptr)) return;
    const BOOL acquired = is256 ? system.acquire2(&admin_, nullptr, algorithm, nullptr, 0)
                                : system.acquire(&admin_, nullptr, 0);
    if (acquired == FALSE) admin_ = nullptr;
    is256_ = is256;
  }
  ~Catalogues() {
    if (catalogue_ != nullptr) system_.releaseCatalogue(admin_, catalogue_, 0);
    if (admin_ != nullptr) system_.release(admin_, 0);
  }
  Catalogues(const Catalogues&) = delete;
  Catalogues& operator=(const Catalogues&) = delete;

  // By the first of the catalogues with the file that is valid; else what is said of the first.
  SystemAnswer Verify(HANDLE file, const std::wstring& path) {
    SystemAnswer answer;
    answer.code = TRUST_E_NOSIGNATURE;
    std::vector<BYTE> hash = HashOf(file);
    while (!hash.empty()) {
      catalogue_ = system_.enumerate(admin_, hash.data(), static_cast<DWORD>(hash.size()), 0, &catalogue_);
      if (catalogue_ == nullptr) break;
      SystemAnswer next = VerifyBy(catalogue_, hash, file, path);
      const bool isValid = next.code == 0;
      if (isValid || IsUnsigned(answer.code)) answer = std::move(next);
      if (isValid) break;
    }
    return answer;
  }

 private:
  SystemAnswer VerifyBy(HCATINFO catalogue, std::vector<BYTE>& hash, HANDLE file,
                        const std::wstring& path) const {
    CATALOG_INFO described = {};
    described.cbStruct = sizeof(described);
    if (system_.describe(catalogue, &described, 0) == FALSE) {
      SystemAnswer none;
      none.code = TRUST_E_NOSIGNATURE;
      return none;
    }
    constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
    std::wstring tag;
    for (const BYTE byte : hash) {
      tag += kDigits[byte >> 4];
      tag += kDigits[byte & 15];
    }
    CatalogueMember member = {};
    member.info.cbStruct = sizeof(member);
    member.info.pcwszCatalogFilePath = described.wszCatalogFile;
    member.info.pcwszMemberTag = tag.c_str();
    member.info.pcwszMemberFilePath = path.c_str();
    member.info.hMemberFile = file;
    member.info.pbCalculatedFileHash = hash.data();
    member.info.cbCalculatedFileHash = static_cast<DWORD>(hash.size());
    member.admin = admin_;
    WINTRUST_DATA question = {};
    question.dwUnionChoice = WTD_CHOICE_CATALOG;
    question.pCatalog = &member.info;
    return Ask(system_, question);
  }
  std::vector<BYTE> HashOf(HANDLE file) const {
    const auto read = [&](DWORD& bytes, BYTE* hash) {
      SetFilePointer(file, 0, nullptr, FILE_BEGIN);
      return is256_ ? system_.hash2(admin_, file, &bytes, hash, 0) : system_.hash(file, &bytes, hash, 0);
    };
    DWORD bytes = 0;
    if (admin_ == nullptr) return {};
    read(bytes, nullptr);
    std::vector<BYTE> hash(bytes);
    if (bytes == 0 || read(bytes, hash.data()) == FALSE) return {};
    hash.resize(bytes);
    return hash;
  }

  const TrustFunctions& system_;
  HCATADMIN admin_ = nullptr;
  HCATINFO catalogue_ = nullptr;
  bool is256_ = false;
};

SystemAnswer Failure(LONG code) {
  SystemAnswer answer;
  answer.code = code;
  return answer;
}

}  // namespace

HMODULE LoadFromSystemFolder(const wchar_t* file) noexcept {
  wchar_t path[MAX_PATH + 16] = {};
  const UINT units = GetSystemDirectoryW(path, MAX_PATH);
  if (units == 0 || units >= MAX_PATH) return nullptr;
  path[units] = L'\\';
  const std::wstring_view name(file);
  if (units + 1 + name.size() >= std::size(path)) return nullptr;
  name.copy(path + units + 1, name.size());
  return LoadLibraryExW(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

struct WindowsTrust::Functions : TrustFunctions {};

WindowsTrust::WindowsTrust() noexcept : functions_(lock_) {}

WindowsTrust::~WindowsTrust() = default;

const WindowsTrust::Functions& WindowsTrust::System() {
  return functions_.Get([] { return Functions(); });
}

SystemAnswer WindowsTrust::VerifyFile(HANDLE file, const std::wstring& path) {
  const TrustFunctions& system = System();
  if (!system.CanVerify()) return Failure(TRUST_E_SYSTEM_ERROR);
  WINTRUST_FILE_INFO info = {};
  info.cbStruct = sizeof(info);
  info.pcwszFilePath = path.c_str();
  info.hFile = file;
  WINTRUST_DATA question = {};
  question.dwUnionChoice = WTD_CHOICE_FILE;
  question.pFile = &info;
  SetFilePointer(file, 0, nullptr, FILE_BEGIN);
  return Ask(system, question);
}

SystemAnswer WindowsTrust::VerifyByCatalogue(HANDLE file, const std::wstring& path) {
  const TrustFunctions& system = System();
  if (!system.CanVerify() || !system.CanUseCatalogues()) return Failure(TRUST_E_NOSIGNATURE);
  SystemAnswer answer = Catalogues(system, L"SHA256").Verify(file, path);
  return IsUnsigned(answer.code) ? Catalogues(system, nullptr).Verify(file, path) : answer;
}

}  // namespace smh
