# Headers that most sources include, compiled once for each kind of program:
# reading them is most of what compiling a source costs. A source names what it
# uses all the same; "./tam check" compiles each one without this.
set(TAM_STANDARD_HEADERS <algorithm> <array> <cstddef> <cstdint> <functional> <limits> <map> <memory> <optional>
  <string> <string_view> <type_traits> <utility> <vector>)
set(TAM_WINDOWS_HEADERS ${TAM_STANDARD_HEADERS} <windows.h> <ocidl.h> <oleauto.h> <OrvDBFaces.h>)
