#pragma once

#include "com/LateBound.h"
#include "tests/host/HostDll.h"

#include <string>
#include <string_view>

namespace hosttest {

/// A compiler with a database folder, called by name as objects call it.
class Compiler {
  public:
    Compiler() {
        wchar_t path[MAX_PATH + 1] = {};
        GetTempPathW(MAX_PATH + 1, path);
        EXPECT_EQ(S_OK, SetDBPath(path));
    }
    ICompilersInterop& Object() { return *object_.Get(); }
    HRESULT SetDBPath(std::wstring_view path) { return object_->SetDBPath(com::Bstr(path).Get()); }

    /// What the three references hold after a call.
    struct Result {
        std::wstring stream;
        std::wstring cdb;
        std::wstring ddb;
    };

    Result Compile(std::wstring_view document) {
        com::Bstr stream(document);
        com::Bstr cdb;
        com::Bstr ddb;
        VARIANT arguments[] = {com::ByReference(stream), com::ByReference(cdb), com::ByReference(ddb)};
        com::CallMember(*object_.Get(), L"CompileTamObject", arguments);
        return {std::wstring(stream.View()), std::wstring(cdb.View()), std::wstring(ddb.View())};
    }

    /// The description of the refusal; checks its number and that nothing changed.
    std::wstring Refusal(std::wstring_view document) {
        com::Variant stream(document);
        com::Variant cdb(L"before");
        com::Variant ddb(7L);
        VARIANT first = stream.Get();
        VARIANT second = cdb.Get();
        VARIANT third = ddb.Get();
        EXPECT_EQ(kNotAnExportDocument, object_->CompileTamObject(&first, &second, &third));
        EXPECT_EQ(document, com::View(first.bstrVal));
        EXPECT_EQ(L"before", com::View(second.bstrVal));
        EXPECT_EQ(7, third.lVal);
        return LastError();
    }

  private:
    com::Ref<ICompilersInterop> object_ = Create<ICompilersInterop>(__uuidof(CompilersInterop));
};

/// An export document with these sections' content.
inline std::wstring Document(const std::wstring& inputs, const std::wstring& outputs = {},
                             const std::wstring& attributes = {}) {
    return L"<O_Tam_id DevAddr=\"12\" AppID=\"A\" DevKey=\"K7\" TamObjectID=\"3\" "
           L"IsLastOnDev=\"1\"><Inputs>" +
           inputs + L"</Inputs><Outputs>" + outputs + L"</Outputs><Attributes>" + attributes +
           L"</Attributes></O_Tam_id>";
}

inline std::wstring Input(const std::wstring& type) {
    return L"<I LinkReference=\"0000\" LogicalAddress=\"1\" SNVTType=\"" + type +
           L"\" isPermanent=\"0\" IsConnected=\"0\"/>";
}

inline std::wstring Output(const std::wstring& type) {
    return L"<O LogicalAddress=\"1\" SNVTType=\"" + type +
           L"\" isMapAsOO=\"0\" ObjOffset=\"0\" AbsoluteObjectIndex=\"0\" IsConnected=\"0\" "
           L"IsWritable=\"0\"/>";
}

inline std::wstring Attribute(const std::wstring& type, const std::wstring& permanent) {
    return L"<A LogicalAddress=\"1\" SNVTType=\"" + type + L"\" Value=\"\" isPermanent=\"" + permanent +
           L"\" IsConnected=\"0\"/>";
}

} // namespace hosttest
