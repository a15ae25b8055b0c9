#include "siblings/raterkit/trust_store.h"

#include "infra/runtime/exceptions.h"
#include "sysutil/network_roots.h"

namespace smh {

namespace {

TrustedFile Unreadable(HRESULT code) {
  TrustedFile file;
  file.code = code;
  return file;
}

// What may be another answer the next moment is asked for again.
bool Lasts(SignatureState state) noexcept {
  return state != kSignatureOffline && state != kSignatureUnreadable;
}

}  // namespace

Signature TrustStore::Ask(const OpenedFile& file) {
  SystemAnswer answer = system_->VerifyFile(file.Handle(), file.PathHere());
  const bool isUnsigned = IsUnsigned(answer.code);
  if (isUnsigned) answer = system_->VerifyByCatalogue(file.Handle(), file.PathHere());
  Signature signature;
  signature.state = StateOf(answer.code, isUnsigned);
  static_cast<SystemAnswer&>(signature) = std::move(answer);
  return signature;
}

std::optional<TrustedFile> TrustStore::Recall(const FileKey& key) {
  const ScopedLock guard(lock_);
  const auto found = known_.find(key);
  if (found == known_.end() || GetTickCount64() - found->second.since > kKnownMs) return std::nullopt;
  return found->second.file;
}

void TrustStore::Remember(const FileKey& key, const TrustedFile& file) {
  const ScopedLock guard(lock_);
  if (known_.insert_or_assign(key, Known{file, GetTickCount64()}).second) order_.push_back(key);
  while (order_.size() > kMostFiles) {
    known_.erase(order_.front());
    order_.pop_front();
  }
}

TrustedFile TrustStore::VerifyReachable(std::wstring_view path) {
  const OpenedFile file(path);
  const std::optional<TrustedFile> known = Recall(file.Key());
  if (known && file.Key().change != 0) return *known;
  const Sha256 hash = file.Hash();
  if (known && known->hash == hash) return *known;
  TrustedFile result;
  const std::optional<Signature> earlier = file_.Find(hash, file.Key().extension);
  static_cast<Signature&>(result) = earlier ? *earlier : Ask(file);
  // Nobody opens it to write meanwhile, but one who has mapped it before needs not.
  if (!earlier && file.Hash() != hash) return Unreadable(HRESULT_FROM_WIN32(ERROR_SHARING_VIOLATION));
  result.hash = hash;
  if (!Lasts(result.state)) return result;
  if (!earlier) file_.Add(hash, file.Key().extension, result);
  Remember(file.Key(), result);
  return result;
}

TrustedFile TrustStore::Verify(std::wstring_view path) {
  if (!IsReachable(path)) return Unreadable(HRESULT_FROM_WIN32(ERROR_BAD_NETPATH));
  try {
    return VerifyReachable(path);
  } catch (const EOSError& error) {
    return Unreadable(error.Result());
  }
}

}  // namespace smh
