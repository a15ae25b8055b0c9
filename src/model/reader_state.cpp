#include "model/reader_state.h"

namespace smh {

constinit ModuleGlobal<ReaderState> g_reader(L"reader_state");

void CheckTerminated() {
  g_reader->thread.CheckTerminated();
}

}  // namespace smh
