// The root that the sample machine knows, where a user's and a machine's roots are kept.
#pragma once

#include "tests/support/file_fixture.h"

#include <windows.h>
#include <gtest/gtest.h>
#include <wincrypt.h>

#include <sstream>
#include <string>

namespace smh::test {

enum class RootPlace { kUser, kMachinePolicy };

// Puts the sample machine's root there, or takes it out: by the registry, because some systems keep what is
// added and deleted through a store in memory. `samples` is the built drive. The value is a run of
// properties: number, 1, size, bytes; 3 is the key's name, 32 the certificate.
inline void SetSampleRoot(const std::wstring& samples, RootPlace place, bool isThere) {
  const std::string root = ReadFileBytes(samples + L"Samples\\Certificates\\root.cer");
  const auto certificate = reinterpret_cast<const BYTE*>(root.data());
  const auto size = static_cast<DWORD>(root.size());
  std::string hash(20, '\0');
  DWORD bytes = 20;
  EXPECT_TRUE(
      CryptHashCertificate(0, CALG_SHA1, 0, certificate, size, reinterpret_cast<BYTE*>(hash.data()), &bytes));
  const bool isUsers = place == RootPlace::kUser;
  const HKEY hive = isUsers ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
  std::wostringstream key;
  key << (isUsers ? L"Software\\Microsoft" : L"Software\\Policies\\Microsoft")
      << L"\\SystemCertificates\\Root\\Certificates\\" << std::hex << std::uppercase;
  for (const char byte : hash) key << ((byte >> 4) & 15) << (byte & 15);
  if (!isThere) {
    RegDeleteKeyW(hive, key.str().c_str());
    return;
  }
  const DWORD heads[] = {3, 1, 20, 32, 1, size};
  const auto head = [&](int i) { return std::string(reinterpret_cast<const char*>(&heads[i]), 12); };
  const std::string blob = head(0) + hash + head(3) + root;
  EXPECT_EQ(RegSetKeyValueW(hive, key.str().c_str(), L"Blob", REG_BINARY, blob.data(),
                            static_cast<DWORD>(blob.size())),
            ERROR_SUCCESS);
}

}  // namespace smh::test
