#include "dialogs/ValueEditor.h"

namespace tam {

std::unique_ptr<ValueEditor> MakeValueEditor(std::wstring_view) { return nullptr; }

} // namespace tam
