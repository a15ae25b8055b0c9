// The main window: tool bar and search box, the tree of locations, the view that it chose, the status bar.
// Everything of it runs on the thread that made it.
#pragma once

#include "hosts/gui/account.h"
#include "hosts/gui/command_bar.h"
#include "hosts/gui/dpi.h"
#include "hosts/gui/entries_view.h"
#include "hosts/gui/location_tree.h"
#include "hosts/gui/programs_view.h"
#include "hosts/gui/ui_queue.h"
#include "hosts/gui/undo_view.h"
#include "hosts/gui/view.h"
#include "hosts/gui/window.h"
#include "hosts/gui/worker.h"

#include <memory>

namespace smh {

// Owns the views, which see it as a Frame only. What it wants of the library it posts to the worker; answers
// and news come back through the queue.
class MainWindow final : public Window {
 public:
  // Both outlive the window. Raises HostError when the account cannot be found out.
  MainWindow(Worker& worker, UiQueue& queue);
  // Drops what the queue still has for the window.
  ~MainWindow() override;

  // Makes and shows the window as the user left it, and starts reading. Raises HostError when it cannot be
  // made.
  void Open(int showCommand);
  // Handles messages until the window is closed; an exception of a handler ends in a message box.
  void RunMessages();

 private:
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void OnCreate();
  LRESULT OnNotify(const NMHDR& header);
  void OnCommand(UINT command, UINT code);
  void OnMenuOpens(HMENU menu) const;
  void OnContextMenu(HWND control, POINT point);
  void OnDpiChanged(int dpi, const RECT& suggested);

  void Layout();
  void LayoutTop(int width, int top, int height) const;
  void ApplyDpi();
  void LoadLook();
  void SaveLook() const;

  bool CanRun(UINT command) const;
  void Run(UINT command);
  void ShowNode(const LocationTree::Node& node);
  void ShowView(View& view);
  void ShowBanner(const LocationTree::Node& node) const;
  std::vector<View*> Views() const;
  void Refresh();
  void Update();
  void UpdateNow();
  void ShowStatus();
  std::wstring ReadingText() const;
  void NextPane(bool backwards) const;
  void ShowAbout() const;
  void RestartAsAdministrator();

  Worker& worker_;
  UiQueue& queue_;
  const Account account_ = CurrentAccount();
  Frame frame_;
  LocationTree tree_;
  CommandBar bar_;
  Splitter splitter_;
  std::unique_ptr<EntriesView> entries_;
  std::unique_ptr<ProgramsView> programs_;
  std::unique_ptr<UndoView> undo_;
  View* view_ = nullptr;
  HWND search_ = nullptr;
  HWND status_ = nullptr;
  HWND banner_ = nullptr;
  ScopedFont font_;
  ScopedFont heading_;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  int treeWidth_ = 230;  // at 96 DPI
  bool allLocations_ = false;
  static constexpr UINT kUpdateMessage = WM_APP + 2;
  bool updateWaits_ = false;
  std::wstring said_;
};

}  // namespace smh
