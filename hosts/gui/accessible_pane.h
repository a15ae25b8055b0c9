// A model as the system's interface for programs that read the screen.
#pragma once

#include "core/contracts/com_object.h"
#include "hosts/gui/accessible_model.h"

#include <oleacc.h>

namespace smh {

// Answers for a window from its model, which neither is its own: when Disconnect has been called every method
// fails with CO_E_OBJNOTCONNECTED. Belongs to the window's thread; the system brings calls of others there.
// Exceptions of the model end as E_FAIL. Counted; made by MakeComObject.
class AccessiblePane final : public IAccessible, protected CountedLifetime {
 public:
  AccessiblePane(HWND window, AccessibleModel& model) noexcept : window_(window), model_(&model) {}
  void Disconnect() noexcept { model_ = nullptr; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return Acquire(); }
  ULONG STDMETHODCALLTYPE Release() override { return Drop(); }

  // Late binding is not served: E_NOTIMPL.
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override;

  // As Windows documents them. Children are simple elements, so get_accChild has none to give (S_FALSE).
  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override;
  HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override;
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override;
  HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* text) override;
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* text) override;
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* text) override;
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override;
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override;
  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* text) override;
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT child, LONG* topic) override;
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* text) override;
  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override;
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) override;
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* text) override;
  HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT child) override;
  HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                        VARIANT child) override;
  HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT start, VARIANT* end) override;
  HRESULT STDMETHODCALLTYPE accHitTest(LONG left, LONG top, VARIANT* child) override;
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override;
  HRESULT STDMETHODCALLTYPE put_accName(VARIANT child, BSTR text) override;
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT child, BSTR text) override;

 private:
  ~AccessiblePane() override = default;
  template <typename Answer>
  HRESULT OfModel(Answer&& answer) const noexcept;
  template <typename Answer>
  HRESULT OfChild(const VARIANT& child, Answer&& answer) const noexcept;
  template <typename Read>
  HRESULT TextOfChild(const VARIANT& child, BSTR* text, Read&& read) const noexcept;
  template <typename Read>
  HRESULT NumberOfChild(const VARIANT& child, VARIANT* number, Read&& read) const noexcept;

  const HWND window_;
  AccessibleModel* model_;
};

}  // namespace smh
