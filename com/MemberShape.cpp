#include "com/MemberShape.h"

#include "com/Boundary.h"

namespace com {

namespace {

MemberShape ReadShape(const FUNCDESC& function) {
    MemberShape shape{function.memid, function.invkind, {}};
    for (int i = 0; i < function.cParams; ++i) {
        const ELEMDESC& parameter = function.lprgelemdescParam[i];
        if ((parameter.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) {
            continue;
        }
        const TYPEDESC& type = parameter.tdesc;
        const bool object = type.vt == VT_PTR && type.lptdesc->vt == VT_USERDEFINED;
        const bool reference = type.vt == VT_PTR && !object;
        shape.arguments.push_back(object ? VARTYPE{VT_DISPATCH} : reference ? VARTYPE{VT_VARIANT} : type.vt);
    }
    return shape;
}

/// The place among the member's arguments of the caller's argument `index`.
/// Named ones come first, the others last to first behind them.
std::size_t PlaceOf(const MemberShape& shape, const DISPPARAMS& params, UINT index) {
    if (index >= params.cNamedArgs) {
        return params.cArgs - 1 - index;
    }
    const DISPID name = params.rgdispidNamedArgs[index];
    return name == DISPID_PROPERTYPUT ? shape.arguments.size() - 1 : static_cast<std::size_t>(name);
}

bool Becomes(const VARIANT& value, VARTYPE type) {
    if (type == VT_VARIANT || (value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND)) {
        return true;
    }
    VARIANT source = value; // borrowed: the conversion does not change it
    Variant converted;
    return SUCCEEDED(VariantChangeTypeEx(converted.Put(), &source, LOCALE_USER_DEFAULT, 0, type));
}

} // namespace

std::vector<MemberShape> ReadShapes(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    Check(info.GetTypeAttr(&attributes));
    const UINT count = attributes->cFuncs;
    info.ReleaseTypeAttr(attributes);
    std::vector<MemberShape> shapes;
    for (UINT i = 0; i < count; ++i) {
        FUNCDESC* function = nullptr;
        Check(info.GetFuncDesc(i, &function));
        const auto failure = Attempt([&] { shapes.push_back(ReadShape(*function)); });
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

bool TooMany(const MemberShape& shape, const DISPPARAMS& params) noexcept {
    return params.cArgs > shape.arguments.size();
}

UINT FirstMismatch(const MemberShape& shape, const DISPPARAMS& params) noexcept {
    for (UINT i = 0; i < params.cArgs; ++i) {
        const std::size_t place = PlaceOf(shape, params, i);
        if (place < shape.arguments.size() && !Becomes(params.rgvarg[i], shape.arguments[place])) {
            return i;
        }
    }
    return params.cArgs;
}

} // namespace com
