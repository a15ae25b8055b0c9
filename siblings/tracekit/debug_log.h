// The object behind tracekit's service. Output is on from the start: the library is loaded only when debug
// mode is on, and whoever loaded it then just traces; SetEnabled switches it off and on again.
#pragma once

#include "core/contracts/com_object.h"
#include "core/contracts/intf_DebugLog.h"
#include "infra/runtime/module_global.h"

namespace smh {

// Any thread may call. One line per call: local time, thread, two blanks per method that the thread has
// entered (forty at most), and "> name(args) [context]", "< [context]" or the message. Line ends and other
// control characters become blanks. A line that cannot be written is the failure of its call.
class DebugLog final : public ServiceObject<IDebugLog> {
 public:
  HRESULT STDMETHODCALLTYPE EnterMethod(const void* context, const wchar_t* name, const wchar_t* const* args,
                                        std::int32_t count) override;
  HRESULT STDMETHODCALLTYPE ExitMethod(const void* context) override;
  HRESULT STDMETHODCALLTYPE Message(const wchar_t* text) override;
  HRESULT STDMETHODCALLTYPE SetEnabled(std::int32_t enabled) override;
};

// The trace's file, switch and nesting, which live from the module's start to its stop.
struct Trace;
extern ModuleGlobal<Trace> g_trace;

}  // namespace smh
