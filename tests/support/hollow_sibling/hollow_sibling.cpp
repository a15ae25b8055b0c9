// Stands in for one of the sibling libraries, under its name. It hands out what a test put in for an
// identifier and asks the real library beside the test program for anything else.
#include "infra/runtime/import_function.h"

#include <unknwn.h>

#include <map>
#include <string>

namespace {

using Services = std::map<std::wstring, IUnknown*>;

Services* g_services = nullptr;
HMODULE g_self = nullptr;

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
  const auto found = g_services->find(id);
  if (found != g_services->end() && found->second != nullptr) return found->second;
  using Function = IUnknown*(__stdcall*)(const wchar_t*, DWORD);
  const HMODULE real = LoadLibraryW(RealLibrary().c_str());
  const auto ask = smh::ImportFunction<Function>(real, "GetInstance");
  return ask == nullptr ? nullptr : ask(id, parameter);
}

// Holds a reference to the object until another one, or null, takes its place.
extern "C" void __stdcall SetService(const wchar_t* id, IUnknown* object) {
  if (object != nullptr) object->AddRef();
  IUnknown*& place = (*g_services)[id];
  if (place != nullptr) place->Release();
  place = object;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) {
    g_self = module;
    g_services = new Services;
  }
  return TRUE;
}
