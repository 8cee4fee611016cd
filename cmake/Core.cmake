# Pure code of the component: parsers, texts, collections, dialog states.
# It includes no Windows header; the native build with sanitizers proves it.
set(TAM_CORE_SOURCES
  common/Case.cpp
  common/DataSizeTable.cpp
  common/FieldParser.cpp
  common/KeyOrder.cpp
  common/Numbers.cpp
  common/RunTimeError.cpp
  dialogs/BitEditorState.cpp
  dialogs/EditText.cpp
  dialogs/EnumEditorState.cpp
  dialogs/ErrorReportState.cpp
  dialogs/LongText.cpp
  dialogs/NumericEditorState.cpp
  dialogs/RenameState.cpp
  dialogs/ShownValue.cpp
  dialogs/StructureEditorState.cpp
  dialogs/TextEditorState.cpp
  dialogs/ValueNumber.cpp
  points/CompatibleList.cpp
  points/EnumDescription.cpp
  points/PointKeys.cpp
  points/ValueText.cpp)
list(TRANSFORM TAM_CORE_SOURCES PREPEND "${CMAKE_SOURCE_DIR}/")

add_library(core STATIC ${TAM_CORE_SOURCES})
target_include_directories(core PUBLIC "${CMAKE_SOURCE_DIR}")
target_link_libraries(core PRIVATE tam_warnings)
target_precompile_headers(core PRIVATE ${TAM_STANDARD_HEADERS})

# The same of the host services: what reads an export document and writes its
# image, and what reads numbers.
set(TAM_HOST_CORE_SOURCES
  host/ExportReader.cpp
  host/Image.cpp
  host/NumberText.cpp
  host/TypeTable.cpp
  host/XmlReader.cpp)
list(TRANSFORM TAM_HOST_CORE_SOURCES PREPEND "${CMAKE_SOURCE_DIR}/")

add_library(host_core STATIC ${TAM_HOST_CORE_SOURCES})
target_link_libraries(host_core PUBLIC core PRIVATE tam_warnings)

option(TAM_SANITIZE "AddressSanitizer and UBSan in the native build" OFF)
if(NOT WIN32 AND TAM_SANITIZE)
  target_compile_definitions(core PUBLIC _GLIBCXX_ASSERTIONS)
  target_compile_options(core PUBLIC -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(core PUBLIC -fsanitize=address,undefined)
endif()
