#include "platform/win32/ComponentsWin32.h"

#include <windows.h>
#include <oleauto.h>

#include <algorithm>

#include "platform/win32/Handle.h"

namespace marl::win32 {

namespace {

/// A VARIANT that clears itself.
class Variant {
 public:
  Variant() { VariantInit(&value_); }
  ~Variant() { VariantClear(&value_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  VARIANT* get() { return &value_; }

  void Set(const ComponentValue& value) {
    VariantClear(&value_);
    if (const auto* const number = std::get_if<std::int32_t>(&value)) {
      value_.vt = VT_I4;
      value_.lVal = *number;
    } else if (const auto* const text = std::get_if<Text>(&value)) {
      value_.vt = VT_BSTR;
      value_.bstrVal = SysAllocStringLen(Wide(*text), static_cast<UINT>(text->size()));
    }
  }

  ComponentValue Get() {
    Variant plain;
    // By-reference results are followed.
    if (FAILED(VariantCopyInd(plain.get(), &value_))) return ForeignValue();
    VARIANT& v = *plain.get();
    switch (v.vt) {
      case VT_EMPTY: return {};
      case VT_BSTR: return FromWide(v.bstrVal, SysStringLen(v.bstrVal));
      case VT_BOOL: return std::int32_t{v.boolVal};
      case VT_I1:
      case VT_UI1:
      case VT_I2:
      case VT_UI2:
      case VT_I4:
      case VT_UI4:
      case VT_INT:
      case VT_UINT:
      case VT_R4:
      case VT_R8:
        if (SUCCEEDED(VariantChangeType(&v, &v, 0, VT_I4))) return std::int32_t{v.lVal};
        return ForeignValue();
      default: return ForeignValue();
    }
  }

 private:
  VARIANT value_;
};

Text MessageOf(DWORD code) {
  wchar_t* text = nullptr;
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, code, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
  const UniqueMemory owned(text);
  Text message = FromWide(text, length);
  while (message.ends_with(u'\n') || message.ends_with(u'\r')) message.pop_back();
  return message;
}

Text SystemMessage(HRESULT code) {
  Text message = MessageOf(static_cast<DWORD>(code));
  // A Win32 error code inside a HRESULT, for which not every system has a text.
  if (message.empty() && HRESULT_FACILITY(code) == FACILITY_WIN32) {
    message = MessageOf(static_cast<DWORD>(HRESULT_CODE(code)));
  }
  return message.empty() ? Text(u"Automation error") : message;
}

/// A failure's description, or the system's text if it has none.
Text FailureText(HRESULT status, const EXCEPINFO& exception) {
  const UINT length = SysStringLen(exception.bstrDescription);
  if (length > 0) return FromWide(exception.bstrDescription, length);
  return SystemMessage(FAILED(exception.scode) ? exception.scode : status);
}

class ComponentWin32 : public Component {
 public:
  explicit ComponentWin32(IDispatch* object) : object_(object) {}

  bool Call(TextView operation, std::vector<ComponentValue>& arguments, ComponentValue& result,
            Text& failure) override {
    Text name(operation);
    auto* names = reinterpret_cast<wchar_t*>(name.data());
    DISPID id = 0;
    HRESULT status = object_.get()->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(status)) {
      failure = SystemMessage(status);
      return false;
    }
    const std::size_t count = arguments.size();
    std::vector<Variant> values(count);
    std::vector<VARIANT> references(count);
    // Arguments stand in reverse order, by reference so that the component can fill them.
    for (std::size_t i = 0; i < count; ++i) {
      values[i].Set(arguments[i]);
      VARIANT& reference = references[count - 1 - i];
      reference = {};
      reference.vt = VT_BYREF | VT_VARIANT;
      reference.pvarVal = values[i].get();
    }
    DISPPARAMS parameters = {references.data(), nullptr, static_cast<UINT>(count), 0};
    Variant answer;
    EXCEPINFO exception = {};
    status = object_.get()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT,
                                   DISPATCH_METHOD | DISPATCH_PROPERTYGET, &parameters,
                                   answer.get(), &exception, nullptr);
    if (FAILED(status)) {
      if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
      const UniqueText source(exception.bstrSource);
      const UniqueText description(exception.bstrDescription);
      const UniqueText helpFile(exception.bstrHelpFile);
      failure = FailureText(status, exception);
      return false;
    }
    for (std::size_t i = 0; i < count; ++i) arguments[i] = values[i].Get();
    result = answer.Get();
    return true;
  }

 private:
  UniqueObject<IDispatch> object_;
};

}  // namespace

ComponentsWin32::ComponentsWin32() { initialised_ = SUCCEEDED(OleInitialize(nullptr)); }

ComponentsWin32::~ComponentsWin32() {
  if (initialised_) OleUninitialize();
}

std::unique_ptr<Component> ComponentsWin32::Create(TextView name, Text& failure) {
  failure.clear();
  CLSID id;
  if (FAILED(CLSIDFromProgID(Wide(Text(name)), &id))) return nullptr;
  IDispatch* object = nullptr;
  const HRESULT status = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                          reinterpret_cast<void**>(&object));
  if (FAILED(status)) {
    failure = SystemMessage(status);
    return nullptr;
  }
  return std::make_unique<ComponentWin32>(object);
}

}  // namespace marl::win32
