// Stands in for one of the sibling libraries, under its name. It hands out what a test put in for an
// identifier and asks the real library beside the test program for anything else.
#include "infra/import_function.h"

#include <unknwn.h>

#include <string>

namespace {

struct Service {
  std::wstring id;
  IUnknown* object = nullptr;
};

constexpr std::size_t kServices = 8;
Service* g_services = nullptr;
HMODULE g_self = nullptr;

Service* FindService(const wchar_t* id) {
  for (std::size_t i = 0; i < kServices; ++i) {
    if (g_services[i].object != nullptr && g_services[i].id == id) return &g_services[i];
  }
  return nullptr;
}

// This library's name in the folder of the program.
std::wstring RealLibrary() {
  wchar_t program[MAX_PATH];
  wchar_t self[MAX_PATH];
  std::wstring path(program, GetModuleFileNameW(nullptr, program, MAX_PATH));
  const std::wstring own(self, GetModuleFileNameW(g_self, self, MAX_PATH));
  path.resize(path.rfind(L'\\') + 1);
  return path.append(own, own.rfind(L'\\') + 1);
}

}  // namespace

extern "C" IUnknown* __stdcall GetInstance(const wchar_t* id, DWORD parameter) {
  if (Service* const service = FindService(id)) return service->object;
  using Function = IUnknown*(__stdcall*)(const wchar_t*, DWORD);
  const HMODULE real = LoadLibraryW(RealLibrary().c_str());
  const auto ask = smh::ImportFunction<Function>(real, "GetInstance");
  return ask == nullptr ? nullptr : ask(id, parameter);
}

// Holds a reference to the object until another one, or null, takes its place. False when all places are
// taken.
extern "C" BOOL __stdcall SetService(const wchar_t* id, IUnknown* object) {
  Service* service = FindService(id);
  if (object != nullptr) object->AddRef();
  for (std::size_t i = 0; service == nullptr && i < kServices; ++i) {
    if (g_services[i].object == nullptr) service = &g_services[i];
  }
  if (service == nullptr) return FALSE;
  IUnknown* const old = service->object;
  service->id = id;
  service->object = object;
  if (old != nullptr) old->Release();
  return TRUE;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) {
    g_self = module;
    g_services = new Service[kServices];
  }
  return TRUE;
}
