// An in-process component for the tests: "Marl.TrackingServerClient" as the suite would bring it.
//
// Its one operation SetServer(document) appends the document, as it came and with a NUL behind it,
// to the file that the environment names in MARL_TEST_CLIENT. A document that holds "refused" fails
// with a description.

#include <windows.h>

#include <oleauto.h>

#include <atomic>

namespace {

constexpr DISPID kSetServer = 1;
constexpr wchar_t kDescription[] = L"The server refused \u2013 \"no\" means no.";

std::atomic<long> g_objects;

void Record(BSTR document) {
  wchar_t path[MAX_PATH];
  const DWORD length = GetEnvironmentVariableW(L"MARL_TEST_CLIENT", path, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return;
  const HANDLE file = CreateFileW(path, FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  DWORD written = 0;
  WriteFile(file, document, (SysStringLen(document) + 1) * sizeof(wchar_t), &written, nullptr);
  CloseHandle(file);
}

class Client : public IDispatch {
 public:
  Client() { ++g_objects; }
  virtual ~Client() { --g_objects; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch)) {
      *out = nullptr;
      return E_NOINTERFACE;
    }
    *out = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    if (count != 1 || lstrcmpiW(names[0], L"SetServer") != 0) return DISP_E_UNKNOWNNAME;
    ids[0] = kSetServer;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                   VARIANT*, EXCEPINFO* exception, UINT*) override {
    if (id != kSetServer) return DISP_E_MEMBERNOTFOUND;
    if (parameters->cArgs != 1) return DISP_E_BADPARAMCOUNT;
    VARIANT document;
    VariantInit(&document);
    HRESULT status = VariantCopyInd(&document, &parameters->rgvarg[0]);
    if (SUCCEEDED(status) && document.vt != VT_BSTR) status = DISP_E_TYPEMISMATCH;
    if (SUCCEEDED(status)) {
      Record(document.bstrVal);
      if (wcsstr(document.bstrVal, L"refused")) {
        if (exception) exception->bstrDescription = SysAllocString(kDescription);
        status = DISP_E_EXCEPTION;
      }
    }
    VariantClear(&document);
    return status;
  }

 private:
  std::atomic<ULONG> references_{0};
};

class Factory : public IClassFactory {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IClassFactory)) {
      *out = nullptr;
      return E_NOINTERFACE;
    }
    *out = static_cast<IClassFactory*>(this);
    return S_OK;
  }
  // It lives as long as the library.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** out) override {
    *out = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    Client* const client = new Client;
    client->AddRef();
    const HRESULT status = client->QueryInterface(id, out);
    client->Release();
    return status;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

Factory g_factory;

}  // namespace

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID, REFIID id,
                                                                        void** out) {
  return g_factory.QueryInterface(id, out);
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllCanUnloadNow() {
  return g_objects == 0 ? S_OK : S_FALSE;
}
