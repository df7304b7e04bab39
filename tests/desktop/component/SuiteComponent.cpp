// An in-process component for the tests, in place of any of the suite's. The name of its class in
// the registry says which one.
//
// Each call is appended to the file given by the environment variable MARL_TEST_CALLS, as a text
// with a terminating NUL: class, operation and arguments, such as "Marl.QaComponent.Run(1)". A call
// with an argument that contains "refused" fails with a description, one with "wordless" with an
// empty description and E_ACCESSDENIED. If MARL_TEST_LANGUAGES is set, the component provides lists
// of languages and code pages.

#include <windows.h>
#include <oleauto.h>

#include <atomic>
#include <string>
#include <utility>
#include <vector>

/// In a library beside this one (ComponentPart.cpp).
extern "C" __declspec(dllimport) int PartOfTheComponent();

namespace {

constexpr wchar_t kDescription[] = L"The server refused \u2013 \"no\" means no.";

std::atomic<long> g_objects;

void Record(const std::wstring& call) {
  wchar_t path[MAX_PATH];
  const DWORD length = GetEnvironmentVariableW(L"MARL_TEST_CALLS", path, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return;
  const HANDLE file = CreateFileW(path, FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  DWORD written = 0;
  WriteFile(file, call.c_str(), static_cast<DWORD>((call.size() + 1) * sizeof(wchar_t)), &written,
            nullptr);
  CloseHandle(file);
}

/// A tool that keeps working, with its own message loop, until the process ends.
void RunMessages() {
  for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

/// Stores a text where an argument points to.
void Fill(VARIANT* out, const wchar_t* text) {
  VariantClear(out);
  out->vt = VT_BSTR;
  out->bstrVal = SysAllocString(text);
}
/// The same with a number.
void Fill(VARIANT* out, LONG number) {
  VariantClear(out);
  out->vt = VT_I4;
  out->lVal = number;
}

struct Language {
  const wchar_t* description;
  const wchar_t* code;
  LONG encoding;
  LONG localeId;
};
constexpr Language kLanguages[] = {{L"Own \u00fc \u4e2d", L"x-own", 28605, 0x1000},
                                   {L"Other", L"fr", 1252, 12}};

/// Handles the operations of the lists. False for any other operation. The number of languages is
/// one too high: the status of the last one is no number.
bool AnswerLists(const std::wstring& operation, DISPPARAMS& parameters, VARIANT& result) {
  // The last argument comes first.
  const auto argument = [&](UINT place) {
    return parameters.rgvarg[parameters.cArgs - 1 - place].pvarVal;
  };
  if (operation == L"LanguageCount") {
    result.vt = VT_I2;
    result.iVal = 3;
  } else if (operation == L"GetLanguage" && parameters.cArgs == 6) {
    const LONG index = argument(0)->lVal;
    if (index > 1) {
      result.vt = VT_NULL;
      return true;
    }
    Fill(argument(2), kLanguages[index].description);
    Fill(argument(3), kLanguages[index].code);
    Fill(argument(4), kLanguages[index].encoding);
    Fill(argument(5), kLanguages[index].localeId);
  } else if (operation == L"CodePageCount") {
    result.vt = VT_R8;
    result.dblVal = 1;
  } else if (operation == L"GetCodePage" && parameters.cArgs == 5) {
    Fill(argument(2), L"Own page");
    Fill(argument(3), L"own-1");
    Fill(argument(4), 28605L);
  } else {
    return false;
  }
  return true;
}

/// A class's text in the registry.
std::wstring NameOf(REFCLSID id) {
  wchar_t key[64] = L"CLSID\\";
  wchar_t name[256] = {};
  DWORD size = sizeof name;
  StringFromGUID2(id, key + 6, 58);
  RegGetValueW(HKEY_CLASSES_ROOT, key, nullptr, RRF_RT_REG_SZ, nullptr, name, &size);
  return name;
}

/// Base of all objects: reference counting and their one interface.
template <typename Interface>
class Counted : public Interface {
 public:
  Counted() { ++g_objects; }
  virtual ~Counted() { --g_objects; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, __uuidof(Interface))) {
      *out = nullptr;
      return E_NOINTERFACE;
    }
    *out = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 private:
  std::atomic<ULONG> references_{0};
};

/// Returns a new object as `id`, or deletes it if it has no such interface.
template <typename Interface>
HRESULT HandOut(Counted<Interface>* object, REFIID id, void** out) {
  object->AddRef();
  const HRESULT status = object->QueryInterface(id, out);
  object->Release();
  return status;
}

class Component : public Counted<IDispatch> {
 public:
  explicit Component(std::wstring name) : name_(std::move(name)) {}

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    if (count != 1) return DISP_E_UNKNOWNNAME;
    // Every operation exists; its id is its index in the list.
    operations_.emplace_back(names[0]);
    ids[0] = static_cast<DISPID>(operations_.size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    if (id < 1 || static_cast<std::size_t>(id) > operations_.size()) return DISP_E_MEMBERNOTFOUND;
    const std::wstring& operation = operations_[static_cast<std::size_t>(id - 1)];
    std::wstring call = name_ + L"." + operation + L"(";
    // The last argument comes first.
    for (UINT i = parameters->cArgs; i-- > 0;) {
      VARIANT text;
      VariantInit(&text);
      const HRESULT status =
          VariantChangeType(&text, &parameters->rgvarg[i], VARIANT_NOVALUEPROP, VT_BSTR);
      if (FAILED(status)) return status;
      call.append(text.bstrVal, SysStringLen(text.bstrVal));
      if (i > 0) call += L',';
      VariantClear(&text);
    }
    call += L')';
    Record(call);
    if (GetEnvironmentVariableW(L"MARL_COMPONENT_STAYS", nullptr, 0) > 0) RunMessages();
    if (result && GetEnvironmentVariableW(L"MARL_TEST_LANGUAGES", nullptr, 0) > 0 &&
        AnswerLists(operation, *parameters, *result)) {
      return S_OK;
    }
    const bool wordless = call.find(L"wordless") != std::wstring::npos;
    if (!wordless && call.find(L"refused") == std::wstring::npos) return S_OK;
    if (exception) {
      exception->bstrDescription = SysAllocString(wordless ? L"" : kDescription);
      exception->scode = wordless ? E_ACCESSDENIED : E_FAIL;
    }
    return DISP_E_EXCEPTION;
  }

 private:
  std::wstring name_;
  std::vector<std::wstring> operations_;
};

class Factory : public Counted<IClassFactory> {
 public:
  explicit Factory(std::wstring name) : name_(std::move(name)) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** out) override {
    *out = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    return HandOut(new Component(name_), id, out);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  std::wstring name_;
};

}  // namespace

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE
    DllGetClassObject(REFCLSID classId, REFIID id, void** out) {
  if (PartOfTheComponent() != 1) return CLASS_E_CLASSNOTAVAILABLE;
  return HandOut(new Factory(NameOf(classId)), id, out);
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllCanUnloadNow() {
  return g_objects == 0 ? S_OK : S_FALSE;
}
