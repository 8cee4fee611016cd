// A call by name comes with any number of arguments of any type. The type library says
// what a member takes; asking it is slow, so each interface's members are read from it
// once (com/Dll.cpp), and com/CallArguments.cpp goes by what stands here.
#include "com/MemberShape.h"

#include "com/Boundary.h"
#include "com/Ref.h"

#include <algorithm>

namespace com {

namespace {

IID IidOf(ITypeInfo& info, HREFTYPE reference) {
    Ref<ITypeInfo> target;
    Check(info.GetRefTypeInfo(reference, target.Put()));
    TYPEATTR* attributes = nullptr;
    Check(target->GetTypeAttr(&attributes));
    const IID iid = attributes->guid;
    target->ReleaseTypeAttr(attributes);
    return iid;
}

ArgumentShape ReadArgument(ITypeInfo& info, const ELEMDESC& parameter) {
    const TYPEDESC& type = parameter.tdesc;
    ArgumentShape shape;
    shape.isOptional = (parameter.paramdesc.wParamFlags & PARAMFLAG_FOPT) != 0;
    if (type.vt == VT_PTR && type.lptdesc->vt == VT_USERDEFINED) {
        shape.type = VT_DISPATCH;
        shape.interfaceId = IidOf(info, type.lptdesc->hreftype);
    } else {
        shape.isByReference = type.vt == VT_PTR;
        shape.type = shape.isByReference ? type.lptdesc->vt : type.vt;
    }
    return shape;
}

/// The type information of a dual interface lists the functions of IUnknown
/// and IDispatch too. They take seven slots, and are no members.
bool IsMember(const FUNCDESC& function) noexcept {
    constexpr SHORT kFirstMember = 7 * sizeof(void*);
    return function.oVft >= kFirstMember;
}

MemberShape ReadShape(ITypeInfo& info, const FUNCDESC& function) {
    MemberShape shape{function.memid, function.invkind, {}};
    for (int i = 0; i < function.cParams; ++i) {
        const ELEMDESC& parameter = function.lprgelemdescParam[i];
        if ((parameter.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) == 0) {
            shape.arguments.push_back(ReadArgument(info, parameter));
        }
    }
    return shape;
}

} // namespace

std::size_t MemberShape::Required() const noexcept {
    return static_cast<std::size_t>(
        std::count_if(arguments.begin(), arguments.end(),
                      [](const ArgumentShape& argument) { return !argument.isOptional; }));
}

std::vector<MemberShape> ReadShapes(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    Check(info.GetTypeAttr(&attributes));
    const UINT count = attributes->cFuncs;
    info.ReleaseTypeAttr(attributes);
    std::vector<MemberShape> shapes;
    for (UINT i = 0; i < count; ++i) {
        FUNCDESC* function = nullptr;
        Check(info.GetFuncDesc(i, &function));
        const auto failure = Attempt([&] {
            if (IsMember(*function)) {
                shapes.push_back(ReadShape(info, *function));
            }
        });
        info.ReleaseFuncDesc(function);
        if (failure) {
            Check(failure->code);
        }
    }
    return shapes;
}

const MemberShape* FindShape(const std::vector<MemberShape>& shapes, DISPID id, WORD flags) noexcept {
    for (const MemberShape& shape : shapes) {
        if (shape.id == id && (shape.kind & flags) != 0) {
            return &shape;
        }
    }
    return nullptr;
}

bool AreForDefaultMember(const MemberShape& shape, const DISPPARAMS& params) noexcept {
    return shape.kind == INVOKE_PROPERTYGET && shape.arguments.empty() && params.cArgs != 0;
}

} // namespace com
