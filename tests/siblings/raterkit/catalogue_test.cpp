// Catalogues, which this system may have none of: its functions for them are replaced, the certificates stay
// real.
#include "infra/runtime/handle.h"
#include "siblings/raterkit/system_trust.h"
#include "tests/support/child_process.h"
#include "tests/support/code_patch.h"
#include "tests/support/file_fixture.h"
#include "tests/support/sample_root.h"

#include <gtest/gtest.h>
#include <mscat.h>
#include <softpub.h>
#include <wintrust.h>

#include <deque>
#include <span>

namespace smh::test {
namespace {

// What the catalogues that list the file say of it, in their order; 1 for one that cannot be described.
constexpr LONG kUndescribed = 1;
std::span<const LONG> g_answers;
std::size_t g_asked;
PCCERT_CONTEXT g_certificate;

BOOL WINAPI Acquire(HCATADMIN* admin, const GUID*, DWORD) {
  *admin = &g_answers;
  return TRUE;
}
BOOL WINAPI AcquireNone(HCATADMIN*, const GUID*, PCWSTR, PCCERT_STRONG_SIGN_PARA, DWORD) {
  return FALSE;
}
BOOL WINAPI Hash(HANDLE, DWORD* bytes, BYTE* hash, DWORD) {
  if (hash != nullptr) hash[0] = hash[1] = 0xA5;
  *bytes = 2;
  return TRUE;
}
HCATINFO WINAPI Enumerate(HCATADMIN, BYTE*, DWORD, DWORD, HCATINFO* previous) {
  const auto* const next = *previous == nullptr ? g_answers.data() : static_cast<const LONG*>(*previous) + 1;
  return next == g_answers.data() + g_answers.size() ? nullptr : const_cast<LONG*>(next);
}
BOOL WINAPI DescribeCatalogue(HCATINFO catalogue, CATALOG_INFO* info, DWORD) {
  const auto number = static_cast<const LONG*>(catalogue) - g_answers.data();
  info->wszCatalogFile[0] = static_cast<wchar_t>(L'0' + number);
  info->wszCatalogFile[1] = L'\0';
  return *static_cast<const LONG*>(catalogue) == kUndescribed ? FALSE : TRUE;
}
BOOL WINAPI ReleaseCatalogue(HCATADMIN, HCATINFO, DWORD) {
  return TRUE;
}
BOOL WINAPI Release(HCATADMIN, DWORD) {
  return TRUE;
}
LONG WINAPI Verify(HWND, GUID*, void* data) {
  auto& question = *static_cast<WINTRUST_DATA*>(data);
  if (question.dwStateAction == WTD_STATEACTION_CLOSE) return 0;
  ++g_asked;
  EXPECT_STREQ(question.pCatalog->pcwszMemberTag, L"A5A5");
  question.hWVTStateData = &g_answers;
  return g_answers[static_cast<std::size_t>(question.pCatalog->pcwszCatalogFilePath[0] - L'0')];
}
CRYPT_PROVIDER_DATA* WINAPI ProviderOf(HANDLE) {
  static CRYPT_PROVIDER_DATA provider;
  return &provider;
}
CRYPT_PROVIDER_SGNR* WINAPI SignerOf(CRYPT_PROVIDER_DATA*, DWORD, BOOL, DWORD) {
  static CRYPT_PROVIDER_CERT certificate;
  static CRYPT_PROVIDER_SGNR signer;
  certificate.pCert = g_certificate;
  signer.csCertChain = 1;
  signer.pasCertChain = &certificate;
  return &signer;
}

class CatalogueTest : public testing::Test {
 protected:
  CatalogueTest() {
    SetSampleRoot(samples_, RootPlace::kMachinePolicy, true);
    const std::string root = ReadFileBytes(samples_ + L"Samples\\Certificates\\root.cer");
    g_certificate = CertCreateCertificateContext(
        X509_ASN_ENCODING, reinterpret_cast<const BYTE*>(root.data()), static_cast<DWORD>(root.size()));
    LoadLibraryW(L"wintrust.dll");
    Replace("CryptCATAdminAcquireContext", &Acquire);
    Replace("CryptCATAdminAcquireContext2", &AcquireNone);
    Replace("CryptCATAdminCalcHashFromFileHandle", &Hash);
    Replace("CryptCATAdminEnumCatalogFromHash", &Enumerate);
    Replace("CryptCATCatalogInfoFromContext", &DescribeCatalogue);
    Replace("CryptCATAdminReleaseCatalogContext", &ReleaseCatalogue);
    Replace("CryptCATAdminReleaseContext", &Release);
    Replace("WinVerifyTrust", &Verify);
    Replace("WTHelperProvDataFromStateData", &ProviderOf);
    Replace("WTHelperGetProvSignerFromChain", &SignerOf);
  }
  ~CatalogueTest() override {
    CertFreeCertificateContext(g_certificate);
    SetSampleRoot(samples_, RootPlace::kMachinePolicy, false);
  }

 private:
  template <typename Function>
  void Replace(const char* exported, Function* replacement) {
    patches_.emplace_back(L"wintrust.dll", exported, replacement);
  }

  const std::wstring samples_ = ThisFolder() + L"..\\samples\\drive_c\\";
  std::deque<CodePatch> patches_;
};

TEST_F(CatalogueTest, TheFirstThatIsValidCountsElseTheFirst) {
  struct Row {
    std::vector<LONG> answers;
    LONG expected;
    std::size_t asked;
  };
  const Row rows[] = {
      {{}, TRUST_E_NOSIGNATURE, 0},
      {{CERT_E_EXPIRED, 0, CERT_E_REVOKED}, 0, 2},
      {{kUndescribed, 0}, 0, 1},
      {{TRUST_E_BAD_DIGEST, CERT_E_EXPIRED}, TRUST_E_BAD_DIGEST, 2},
      {{kUndescribed, CERT_E_EXPIRED, TRUST_E_BAD_DIGEST}, CERT_E_EXPIRED, 2},
  };
  WindowsTrust trust;
  const std::wstring file = ThisFolder() + L"raterkit.dll";
  const ScopedHandle opened(
      CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  for (const Row& row : rows) {
    SCOPED_TRACE(row.expected);
    g_answers = row.answers;
    g_asked = 0;
    const SystemAnswer answer = trust.VerifyByCatalogue(opened.Get(), file);
    EXPECT_EQ(answer.code, row.expected);
    EXPECT_EQ(g_asked, row.asked);
    EXPECT_EQ(answer.organisation.empty(), row.asked == 0);
  }
}

}  // namespace
}  // namespace smh::test
