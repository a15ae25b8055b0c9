// The main window: what its messages and commands do, and what its bars say. Everything of it runs on the
// thread that made it.
#pragma once

#include "hosts/gui/account.h"
#include "hosts/gui/main_panes.h"
#include "hosts/gui/notices.h"
#include "hosts/gui/view.h"
#include "hosts/gui/window.h"
#include "hosts/gui/worker.h"

#include <string>

namespace smh {

// Owns the panes. What it wants of the library it posts to the worker; answers and news come back through the
// queue.
class MainWindow final : public Window {
 public:
  // All outlive the window. Raises HostError when the account cannot be found out.
  MainWindow(Worker& worker, TrustChecker& trust, UiQueue& queue);
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
  void OnDpiChanged(int dpi, const RECT& suggested);

  void LoadLook();
  void SaveLook() const;

  bool CanRun(UINT command) const;
  bool MeansTree(UINT command) const;
  void Run(UINT command);
  void ShowNode(const LocationTree::Node& node);
  void SearchEverywhere();
  void StartComparing(const std::shared_ptr<const SavedState>& state);
  void StopComparing();
  void HideNotice();
  void ReadEntries();
  void Refresh();
  void Update();
  void UpdateNow();
  void ShowStatus();
  std::wstring ReadingText() const;
  void ShowAbout() const;
  void RestartAsAdministrator();
  void Restart();

  Worker& worker_;
  UiQueue& queue_;
  const Account account_ = CurrentAccount();
  RunningActions actions_;
  Frame frame_;
  Notices notices_{account_};
  LocationSet shownLocations_;
  MainPanes panes_;
  bool allLocations_ = false;
  bool onlyUsualBefore_ = false;  // the comparison has chosen all locations
  static constexpr UINT kUpdateMessage = WM_APP + 2;
  bool updateWaits_ = false;
  std::wstring said_;
};

}  // namespace smh
