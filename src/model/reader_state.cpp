#include "model/reader_state.h"

namespace smh {

constinit ModuleGlobal<ReaderState> g_reader(L"reader_state");

void CheckTerminated() {
  g_reader->thread.CheckTerminated();
}

bool ShowIcons() {
  return g_reader->showIcons.load();
}

void SetShowIcons(bool show) {
  g_reader->showIcons.store(show);
}

}  // namespace smh
