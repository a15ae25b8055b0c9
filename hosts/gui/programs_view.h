// The view of default programs: what mail, media, browser and the like are opened with.
#pragma once

#include "hosts/common/client_record.h"
#include "hosts/gui/frame.h"
#include "hosts/gui/scaled_images.h"
#include "hosts/gui/view.h"
#include "hosts/gui/virtual_list.h"

#include <string>
#include <vector>

namespace smh {

class ProgramsView final : public View {
 public:
  ProgramsView(HWND parent, const Frame& frame);

  // Reads them anew.
  void Refresh();
  // The library's images are about to go.
  void ForgetImages() { list_.SetImages(nullptr); }

  void Show(bool show) override;
  void Place(const RECT& area) override;
  void SetDpi(int dpi, const ViewFonts& fonts) override;
  HWND MainControl() const override { return list_.Handle(); }
  bool OnNotify(const NMHDR& header, LRESULT& result) override { return list_.OnNotify(header, result); }
  bool CanRun(UINT command) const override;
  void Run(UINT command) override;
  void Search(std::wstring_view text) override;
  std::wstring CountText() const override;

 private:
  void Filter();

  const Frame& frame_;
  std::vector<ClientRecord> programs_;
  std::vector<const ClientRecord*> shown_;
  std::wstring search_;
  ScaledImages images_;
  HIMAGELIST smallImages_ = nullptr;
  HIMAGELIST largeImages_ = nullptr;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  VirtualList list_;
  bool isRead_ = false;
};

}  // namespace smh
