// SHA-256 (FIPS 180-4), from the system.
#pragma once

#include "siblings/guardkit/format/journal_steps.h"

#include <windows.h>
#include <bcrypt.h>

#include <span>

namespace smh {

// One hash under way; one thread at a time.
class ContentHasher {
 public:
  // This, Add and Finish raise EOSError with ERROR_INTERNAL_ERROR when the system refuses.
  ContentHasher();
  ~ContentHasher();
  ContentHasher(const ContentHasher&) = delete;
  ContentHasher& operator=(const ContentHasher&) = delete;

  // Goes on with these bytes, of any number.
  void Add(std::span<const std::byte> bytes);
  // Once, after everything was added.
  ContentHash Finish();

 private:
  BCRYPT_ALG_HANDLE algorithm_ = nullptr;
  BCRYPT_HASH_HANDLE hash_ = nullptr;
};

// In lower-case hexadecimal digits.
std::wstring HashText(const ContentHash& hash);

}  // namespace smh
