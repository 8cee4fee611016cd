#include "dialogs/ValueEditor.h"

#include "core/StructureEditorState.h"
#include "dialogs/frmCPModif1.h"
#include "dialogs/frmCPModif2.h"
#include "dialogs/frmCPModif3.h"
#include "dialogs/frmCPModif4.h"
#include "dialogs/frmCPModif5.h"

namespace tam {

std::unique_ptr<ValueEditor> MakeValueEditor(GeneralType type) {
    switch (EditorFor(type)) {
    case EditorKind::Numeric:
        return std::make_unique<frmCPModif1>();
    case EditorKind::Text:
        return std::make_unique<frmCPModif2>();
    case EditorKind::Enumeration:
        return std::make_unique<frmCPModif3>();
    case EditorKind::Structure:
        return std::make_unique<frmCPModif4>();
    case EditorKind::BitField:
        return std::make_unique<frmCPModif5>();
    case EditorKind::None:
        break;
    }
    return nullptr;
}

} // namespace tam
