#include "siblings/guardkit/content_hash.h"

#include "infra/runtime/exceptions.h"

namespace smh {

namespace {

void CheckCall(NTSTATUS status) {
  if (status < 0) RaiseOSError(ERROR_INTERNAL_ERROR);
}

UCHAR* BytesOf(const std::byte* bytes) noexcept {
  return reinterpret_cast<UCHAR*>(const_cast<std::byte*>(bytes));
}

}  // namespace

ContentHasher::ContentHasher() {
  CheckCall(BCryptOpenAlgorithmProvider(&algorithm_, BCRYPT_SHA256_ALGORITHM, nullptr, 0));
  const NTSTATUS created = BCryptCreateHash(algorithm_, &hash_, nullptr, 0, nullptr, 0, 0);
  if (created < 0) BCryptCloseAlgorithmProvider(algorithm_, 0);
  CheckCall(created);
}

ContentHasher::~ContentHasher() {
  BCryptDestroyHash(hash_);
  BCryptCloseAlgorithmProvider(algorithm_, 0);
}

void ContentHasher::Add(std::span<const std::byte> bytes) {
  CheckCall(BCryptHashData(hash_, BytesOf(bytes.data()), static_cast<ULONG>(bytes.size()), 0));
}

ContentHash ContentHasher::Finish() {
  ContentHash hash;
  CheckCall(BCryptFinishHash(hash_, BytesOf(hash.data()), static_cast<ULONG>(hash.size()), 0));
  return hash;
}

std::wstring HashText(const ContentHash& hash) {
  constexpr wchar_t kDigits[] = L"0123456789abcdef";
  std::wstring text;
  for (const std::byte byte : hash) {
    text += kDigits[std::to_integer<unsigned>(byte) >> 4];
    text += kDigits[std::to_integer<unsigned>(byte) & 15];
  }
  return text;
}

}  // namespace smh
