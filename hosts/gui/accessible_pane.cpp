#include "hosts/gui/accessible_pane.h"

#include "hosts/gui/number_enumerator.h"
#include "hosts/gui/system_accessibility.h"

namespace smh {

namespace {

void SetNumber(VARIANT& variant, LONG number) noexcept {
  variant.vt = VT_I4;
  variant.lVal = number;
}

}  // namespace

template <typename Answer>
HRESULT AccessiblePane::OfModel(Answer&& answer) const noexcept {
  if (model_ == nullptr) return CO_E_OBJNOTCONNECTED;
  try {
    return answer(*model_);
  } catch (...) {
    return E_FAIL;
  }
}

template <typename Answer>
HRESULT AccessiblePane::OfChild(const VARIANT& child, Answer&& answer) const noexcept {
  return OfModel([&](AccessibleModel& model) {
    const bool exists = child.vt == VT_I4 && child.lVal >= 0 && child.lVal <= model.Count();
    return exists ? answer(model, static_cast<int>(child.lVal)) : E_INVALIDARG;
  });
}

template <typename Read>
HRESULT AccessiblePane::TextOfChild(const VARIANT& child, BSTR* text, Read&& read) const noexcept {
  if (text == nullptr) return E_POINTER;
  *text = nullptr;
  return OfChild(child, [&](const AccessibleModel& model, int number) {
    const std::wstring answer = read(model, number);
    if (answer.empty()) return S_FALSE;
    *text = SysAllocStringLen(answer.data(), static_cast<UINT>(answer.size()));
    return *text == nullptr ? E_OUTOFMEMORY : S_OK;
  });
}

template <typename Read>
HRESULT AccessiblePane::NumberOfChild(const VARIANT& child, VARIANT* number, Read&& read) const noexcept {
  if (number == nullptr) return E_POINTER;
  VariantInit(number);
  return OfChild(child, [&](const AccessibleModel& model, int each) {
    SetNumber(*number, static_cast<LONG>(read(model, each)));
    return S_OK;
  });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::QueryInterface(REFIID wanted, void** object) {
  if (object == nullptr) return E_POINTER;
  const bool isKnown = IsEqualGUID(wanted, IID_IAccessible) || IsEqualGUID(wanted, IID_IDispatch) ||
                       IsEqualGUID(wanted, IID_IUnknown);
  *object = isKnown ? static_cast<IAccessible*>(this) : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  Acquire();
  return S_OK;
}

HRESULT STDMETHODCALLTYPE AccessiblePane::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE AccessiblePane::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AccessiblePane::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AccessiblePane::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*,
                                                 EXCEPINFO*, UINT*) {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accParent(IDispatch** parent) {
  if (parent == nullptr) return E_POINTER;
  *parent = nullptr;
  return OfModel([&](AccessibleModel&) { return SystemObjectOf(window_, parent); });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accChildCount(LONG* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return OfModel([&](const AccessibleModel& model) {
    *count = model.Count();
    return S_OK;
  });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accChild(VARIANT child, IDispatch** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  return OfChild(child, [](AccessibleModel&, int) { return S_FALSE; });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accName(VARIANT child, BSTR* text) {
  return TextOfChild(child, text, [](const auto& model, int number) { return model.Name(number); });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accValue(VARIANT child, BSTR* text) {
  return TextOfChild(child, text, [](const auto& model, int number) { return model.Value(number); });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accDescription(VARIANT child, BSTR* text) {
  return TextOfChild(child, text, [](const auto& model, int number) { return model.Description(number); });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accRole(VARIANT child, VARIANT* role) {
  return NumberOfChild(child, role, [](const auto& model, int number) { return model.Role(number); });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accState(VARIANT child, VARIANT* state) {
  return NumberOfChild(child, state, [](const auto& model, int number) { return model.State(number); });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accHelp(VARIANT child, BSTR* text) {
  return TextOfChild(child, text, [](const auto&, int) { return std::wstring(); });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accHelpTopic(BSTR*, VARIANT, LONG*) {
  return DISP_E_MEMBERNOTFOUND;
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accKeyboardShortcut(VARIANT child, BSTR* text) {
  return TextOfChild(child, text, [](const auto& model, int number) { return model.Keys(number); });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accFocus(VARIANT* child) {
  if (child == nullptr) return E_POINTER;
  VariantInit(child);
  return OfModel([&](const AccessibleModel& model) {
    if (GetFocus() != window_) return S_FALSE;
    SetNumber(*child, model.Focused());
    return S_OK;
  });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accSelection(VARIANT* children) {
  if (children == nullptr) return E_POINTER;
  VariantInit(children);
  return OfModel([&](const AccessibleModel& model) {
    std::vector<int> selected = model.Selected();
    if (selected.empty()) return S_FALSE;
    if (selected.size() == 1) {
      SetNumber(*children, selected.front());
      return S_OK;
    }
    children->punkVal = MakeComObject<NumberEnumerator>(std::move(selected)).Detach();
    children->vt = VT_UNKNOWN;
    return S_OK;
  });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::get_accDefaultAction(VARIANT child, BSTR* text) {
  return TextOfChild(child, text, [](const auto& model, int number) { return model.DefaultAction(number); });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::accSelect(LONG flags, VARIANT child) {
  return OfChild(child, [flags](AccessibleModel& model, int number) {
    return model.Select(number, flags) ? S_OK : E_INVALIDARG;
  });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                                      VARIANT child) {
  if (left == nullptr || top == nullptr || width == nullptr || height == nullptr) return E_POINTER;
  *left = *top = *width = *height = 0;
  return OfChild(child, [&](const AccessibleModel& model, int number) {
    RECT place = model.Place(number);
    MapWindowPoints(window_, nullptr, reinterpret_cast<POINT*>(&place), 2);
    *left = place.left;
    *top = place.top;
    *width = place.right - place.left;
    *height = place.bottom - place.top;
    return S_OK;
  });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::accNavigate(LONG direction, VARIANT start, VARIANT* end) {
  if (end == nullptr) return E_POINTER;
  VariantInit(end);
  return OfChild(start, [&](const AccessibleModel& model, int number) {
    int to = 0;
    if (number == 0) {
      if (direction == NAVDIR_FIRSTCHILD) to = 1;
      if (direction == NAVDIR_LASTCHILD) to = model.Count();
    } else {
      if (direction == NAVDIR_NEXT || direction == NAVDIR_DOWN) to = number + 1;
      if (direction == NAVDIR_PREVIOUS || direction == NAVDIR_UP) to = number - 1;
    }
    if (to < 1 || to > model.Count()) return S_FALSE;
    SetNumber(*end, to);
    return S_OK;
  });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::accHitTest(LONG left, LONG top, VARIANT* child) {
  if (child == nullptr) return E_POINTER;
  VariantInit(child);
  return OfModel([&](const AccessibleModel& model) {
    POINT point = {left, top};
    RECT area;
    ScreenToClient(window_, &point);
    GetClientRect(window_, &area);
    if (!PtInRect(&area, point)) return S_FALSE;
    SetNumber(*child, model.HitTest(point));
    return S_OK;
  });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::accDoDefaultAction(VARIANT child) {
  return OfChild(child, [](AccessibleModel& model, int number) {
    if (model.DefaultAction(number).empty()) return DISP_E_MEMBERNOTFOUND;
    model.DoDefaultAction(number);
    return S_OK;
  });
}

HRESULT STDMETHODCALLTYPE AccessiblePane::put_accName(VARIANT, BSTR) {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AccessiblePane::put_accValue(VARIANT, BSTR) {
  return E_NOTIMPL;
}

}  // namespace smh
