// The view of default programs: what mail, media, browser and the like are opened with. For the window's
// thread; the worker reads them.
#pragma once

#include "hosts/common/client_record.h"
#include "hosts/gui/view.h"
#include "hosts/gui/virtual_list.h"
#include "hosts/gui/window_images.h"

#include <string>
#include <vector>

namespace smh {

// Shows copies of the default programs; they are read when the view is first shown, and by Refresh. Holds
// nothing of the library but the image lists of its collection.
class ProgramsView final : public View {
 public:
  // `frame` outlives the view, and `parent` destroys the control.
  ProgramsView(HWND parent, const Frame& frame);

  // Reads them anew; what is shown stays until the answer is there.
  void Refresh();
  // The library's images are about to go: nothing is drawn with them from here on.
  void ForgetImages() { list_.SetImages(nullptr); }

  // See view.h.
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
  // The selected one when it is the only one; else null.
  const ClientRecord* OnlySelected() const;
  void ShowProperties(const ClientRecord& program) const;

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
