// What a collection's reader does: every kind's keys, then the details of the entries, then the wait for a
// path that is added.
#pragma once

#include "clients/favorite_list.h"
#include "model/parkable_thread.h"

namespace smh {

class FavoriteReader {
 public:
  // Lives on `thread`.
  FavoriteReader(FavoriteList& list, const ParkableThread& thread) noexcept : list_(list), thread_(thread) {}

  // Returns when the reader was asked to end. A failure that nothing below has caught is logged and survived.
  void Execute() noexcept;

 private:
  void ReadAll();
  void ReadKind(std::int32_t kind, REGSAM view);
  void AddEntry(std::int32_t kind, const std::wstring& keyPath);
  void LoadDetails();
  void LoadDetails(TFavoriteItem& item);
  void WaitForWork();

  FavoriteList& list_;
  const ParkableThread& thread_;
};

}  // namespace smh
