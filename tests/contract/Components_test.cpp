// Components: real late-bound Automation objects, compared with those in memory.

#include "platform/Components.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "platform/memory/MemoryComponents.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
// clang-format off
#include <windows.h>
#include <oleauto.h>
// clang-format on
#include "platform/win32/ComponentsWin32.h"
#include "platform/win32/Handle.h"
#endif

namespace marl {
namespace {

using Arguments = std::vector<ComponentValue>;

constexpr TextView kName = u"Marl.ContractComponent";
constexpr TextView kBroken = u"Marl.ContractBroken";
constexpr TextView kWords = u"No licence – \"today\".";

#ifdef _WIN32

constexpr CLSID kClass = {
    0x3B7D2C51, 0x9A40, 0x4E6B, {0x8F, 0x11, 0x5C, 0x22, 0xA7, 0x90, 0x1E, 0x01}};
constexpr wchar_t kClassText[] = L"{3B7D2C51-9A40-4E6B-8F11-5C22A7901E01}";
constexpr wchar_t kBrokenClassText[] = L"{3B7D2C51-9A40-4E6B-8F11-5C22A7901E02}";

/// An object that a test owns: references are counted but do not delete it.
template <typename Interface>
class Owned : public Interface {
 public:
  virtual ~Owned() = default;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
    *out = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, __uuidof(Interface))) {
      return E_NOINTERFACE;
    }
    *out = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  ULONG references = 0;
};

/// The operations of the contract, as an Automation object.
class AutomationObject : public Owned<IDispatch> {
 public:
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    operation_ = names[0];
    ids[0] = 1;
    return operation_ == L"Unknown" ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    // The last argument comes first.
    const auto argument = [&](UINT place) {
      return parameters->rgvarg[parameters->cArgs - 1 - place].pvarVal;
    };
    if (operation_ == L"Fill") {
      VariantClear(argument(0));
      argument(0)->vt = VT_BSTR;
      argument(0)->bstrVal = SysAllocString(L"filled");
      VariantClear(argument(1));
      argument(1)->vt = VT_I2;
      argument(1)->iVal = -7;
      VariantClear(argument(2));
      argument(2)->vt = VT_DATE;
      result->vt = VT_BSTR;
      result->bstrVal = SysAllocString(L"done");
      return S_OK;
    }
    if (operation_ == L"Nothing") return S_OK;
    if (operation_ == L"Yes") {
      result->vt = VT_BOOL;
      result->boolVal = VARIANT_TRUE;
      return S_OK;
    }
    if (operation_ == L"Half") {
      result->vt = VT_R8;
      result->dblVal = 2.5;
      return S_OK;
    }
    if (operation_ == L"Far") {
      result->vt = VT_R8;
      result->dblVal = 3e9;
      return S_OK;
    }
    if (operation_ == L"Foreign") {
      result->vt = VT_NULL;
      return S_OK;
    }
    result->vt = VT_I4;
    result->lVal = 99;
    if (operation_ == L"FailPlainly") return E_ACCESSDENIED;
    if (operation_ == L"Fail")
      exception->bstrDescription = SysAllocString(L"No licence – \"today\".");
    if (operation_ == L"FailEmpty") exception->bstrDescription = SysAllocString(L"");
    exception->scode = E_ACCESSDENIED;
    return DISP_E_EXCEPTION;
  }

 private:
  std::wstring operation_;
};

class ObjectFactory : public Owned<IClassFactory> {
 public:
  explicit ObjectFactory(AutomationObject& object) : object_(object) {}
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** out) override {
    return object_.QueryInterface(id, out);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  AutomationObject& object_;
};

/// A ProgID, registered while this lives.
class Registration {
 public:
  Registration(TextView name, const wchar_t* id) : key_(L"Software\\Classes\\") {
    key_ += win32::Wide(Text(name));
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, (key_ + L"\\CLSID").c_str(), nullptr, REG_SZ, id,
                    static_cast<DWORD>((wcslen(id) + 1) * sizeof(wchar_t)));
  }
  ~Registration() { RegDeleteTreeW(HKEY_LOCAL_MACHINE, key_.c_str()); }
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;

 private:
  std::wstring key_;
};

/// The object of the contract under its name, and a name without an object.
class AutomationWorld {
 public:
  AutomationWorld() {
    CoRegisterClassObject(kClass, &factory_, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
  }
  ~AutomationWorld() { CoRevokeClassObject(cookie_); }
  AutomationWorld(const AutomationWorld&) = delete;
  AutomationWorld& operator=(const AutomationWorld&) = delete;

  win32::ComponentsWin32 components;  // first, because it initialises COM
  AutomationObject object;

 private:
  Registration name_{kName, kClassText};
  Registration broken_{kBroken, kBrokenClassText};
  ObjectFactory factory_{object};
  DWORD cookie_ = 0;
};

/// The system's text for a code, in one line.
Text SystemText(DWORD code) {
  wchar_t text[200] = {};
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, text,
                 200, nullptr);
  const std::wstring words = text;
  return words.empty()
             ? Text(u"Automation error")
             : win32::FromWide(text, std::min(words.find_first_of(L"\r\n"), words.size()));
}

#endif

/// The same operations in memory.
bool InMemory(const Text& operation, Arguments& arguments, ComponentValue& result, Text& failure) {
  if (operation == u"Fill") {
    arguments = {Text(u"filled"), std::int32_t{-7}, ForeignValue()};
    result = Text(u"done");
    return true;
  }
  if (operation == u"Nothing") return true;
  if (operation == u"Yes") result = std::int32_t{-1};
  if (operation == u"Half") result = std::int32_t{2};
  if (operation == u"Far" || operation == u"Foreign") result = ForeignValue();
  if (result.index() != 0) return true;
  result = std::int32_t{99};
  if (operation == u"Fail") failure = kWords;
  return false;
}

class ComponentsContract : public BackendTest {
 protected:
  ComponentsContract() {
#ifdef _WIN32
    if (real()) {
      world = std::make_unique<AutomationWorld>();
      return;
    }
#endif
    memory.registered[Text(kName)] = InMemory;
    memory.broken[Text(kBroken)] = u"Class not registered";
  }
  std::unique_ptr<Component> Create(TextView name) {
#ifdef _WIN32
    if (real()) return world->components.Create(name, failure);
#endif
    return memory.Create(name, failure);
  }
  int Live() const {
#ifdef _WIN32
    if (real()) return static_cast<int>(world->object.references);
#endif
    return memory.live;
  }

  /// Calls an operation without arguments; its result.
  ComponentValue ResultOf(TextView operation) {
    Arguments none;
    ComponentValue result = Text(u"before");
    EXPECT_TRUE(Create(kName)->Call(operation, none, result, failure));
    return result;
  }
  /// Calls an operation that fails; its error text.
  Text FailureOf(TextView operation) {
    const auto component = Create(kName);
    Arguments arguments = {Text(u"mine"), std::int32_t{1}, {}};
    ComponentValue result = Text(u"before");
    failure = u"before";
    EXPECT_FALSE(component->Call(operation, arguments, result, failure));
    EXPECT_EQ(arguments, (Arguments{Text(u"mine"), std::int32_t{1}, {}}));
    EXPECT_EQ(result, ComponentValue(Text(u"before")));
    return failure;
  }

  MemoryComponents memory;
#ifdef _WIN32
  std::unique_ptr<AutomationWorld> world;
#endif
  Text failure = u"untouched";
};

TEST_P(ComponentsContract, OneThatIsNotRegisteredIsNoFailure) {
  EXPECT_FALSE(Create(u"Marl.ContractNobody"));
  EXPECT_EQ(failure, u"");
}

TEST_P(ComponentsContract, OneThatCannotBeCreatedSaysWhy) {
  EXPECT_FALSE(Create(kBroken));
  EXPECT_NE(failure, u"");
  EXPECT_NE(failure, u"untouched");
}

TEST_P(ComponentsContract, LivesUntilItIsDropped) {
  EXPECT_EQ(Live(), 0);
  {
    const auto component = Create(kName);
    ASSERT_TRUE(component);
    EXPECT_EQ(failure, u"");
    EXPECT_EQ(Live(), 1);
  }
  EXPECT_EQ(Live(), 0);
}

TEST_P(ComponentsContract, FillsArgumentsByReference) {
  const auto component = Create(kName);
  Arguments arguments = {Text(), std::int32_t{1}, Text(u"x")};
  ComponentValue result;
  ASSERT_TRUE(component->Call(u"Fill", arguments, result, failure));
  EXPECT_EQ(arguments, (Arguments{Text(u"filled"), std::int32_t{-7}, ForeignValue()}));
  EXPECT_EQ(result, ComponentValue(Text(u"done")));
}

TEST_P(ComponentsContract, ResultsAreNothingNumbersOrOfAForeignKind) {
  EXPECT_EQ(ResultOf(u"Nothing"), ComponentValue());
  EXPECT_EQ(ResultOf(u"Yes"), ComponentValue(std::int32_t{-1}));
  EXPECT_EQ(ResultOf(u"Half"), ComponentValue(std::int32_t{2}));
  EXPECT_EQ(ResultOf(u"Far"), ComponentValue(ForeignValue()));
  EXPECT_EQ(ResultOf(u"Foreign"), ComponentValue(ForeignValue()));
}

TEST_P(ComponentsContract, AFailureHasItsOwnText) { EXPECT_EQ(FailureOf(u"Fail"), kWords); }

TEST_P(ComponentsContract, AFailureWithoutATextHasTheSystemsForItsCode) {
  for (const TextView operation : {u"FailEmpty", u"FailSilently", u"FailPlainly", u"Unknown"}) {
    const Text words = FailureOf(operation);
    EXPECT_NE(words, u"");
    EXPECT_NE(words, u"before");
    EXPECT_EQ(words, Text(words.substr(0, words.find_first_of(u"\r\n")))) << "one line";
#ifdef _WIN32
    if (!real()) continue;
    EXPECT_EQ(words, SystemText(operation == u"Unknown" ? static_cast<DWORD>(DISP_E_UNKNOWNNAME)
                                                        : ERROR_ACCESS_DENIED));
#endif
  }
}

MARL_OVER_ALL_BACKENDS(ComponentsContract);

}  // namespace
}  // namespace marl
