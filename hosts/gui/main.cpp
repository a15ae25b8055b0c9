// startupmanager: the library's functions in a window.
#include "hosts/common/host_error.h"
#include "hosts/common/host_process.h"
#include "hosts/gui/language_choice.h"
#include "hosts/gui/main_window.h"
#include "hosts/gui/trust_checker.h"
#include "hosts/gui/window_images.h"
#include "infra/runtime/scoped_com.h"

namespace {

using namespace smh;

void Run(int showCommand) {
  UiQueue queue;
  // Ends behind the worker: a change that is being made is not cut off for a file that cannot be read.
  TrustChecker trust(queue);
  // The libraries are loaded first: nothing else can take their names then.
  Worker worker(queue);
  const ScopedCom com(COINIT_APARTMENTTHREADED);
  const INITCOMMONCONTROLSEX classes = {sizeof(classes), ICC_LISTVIEW_CLASSES | ICC_TREEVIEW_CLASSES |
                                                             ICC_BAR_CLASSES | ICC_PROGRESS_CLASS |
                                                             ICC_STANDARD_CLASSES};
  InitCommonControlsEx(&classes);
  const GlyphDrawing drawing;
  MainWindow window(worker, trust, queue);
  window.Open(showCommand);
  window.RunMessages();
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int showCommand) {
  SetUpHostProcess();
  try {
    SetUpLanguage();
    Run(showCommand);
    return 0;
  } catch (...) {
    ShowFault(nullptr, CurrentFaultText());
    return 1;
  }
}
