#include "com/LateBound.h"
#include "tests/com/Caller.h"
#include "tests/com/Subjects.h"

using namespace contract;

namespace {

class ScriptTest : public ContractTest {};
TEST_F(ScriptTest, Probe) {
    const auto module = Module();
    std::vector<VARIANT> args{com::Variant(L"1").Get()};
    com::Bstr one(L"1");
    args[0].vt = VT_BSTR;
    args[0].bstrVal = one.Get();
    for (const wchar_t* name : {L"Inputs", L"Name"}) {
        DISPID id;
        IdOf(module.Get(), name, id);
        for (int f : {2, 3}) {
            com::Variant r;
            HRESULT h = contract::Invoke(module.Get(), id, static_cast<WORD>(f), args, r.Put(), nullptr);
            printf("%ls %d %lx vt %d\n", name, f, h, r.Get().vt);
            if (r.Get().vt == 9 && r.Get().pdispVal)
                printf("%ls\n",
                       std::wstring(com::GetMember(*r.Get().pdispVal, L"Name").Get().bstrVal).c_str());
        }
    }
}
} // namespace
