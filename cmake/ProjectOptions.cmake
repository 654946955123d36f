# What every target of ours is compiled with. Linked privately, so that it never leaks into a user of a target.
add_library(project_options INTERFACE)
target_compile_options(project_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Woverloaded-virtual -Werror
  # Some libraries ask for it; with one setting for all, the precompiled headers fit everywhere.
  -pthread)
target_compile_definitions(project_options INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH
  KESTROVA_VERSION="${PROJECT_VERSION}")
target_include_directories(project_options INTERFACE ${PROJECT_SOURCE_DIR})

if(KESTROVA_SANITIZE)
  # Whole-program, since an instrumented library cannot be linked into a plain executable.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# The headers that nearly every source meets, read once for all targets. Each source still includes what it uses; a
# build with KESTROVA_PRECOMPILE off proves it.
option(KESTROVA_PRECOMPILE "Precompile the headers that nearly every source meets" ON)
function(kestrova_precompile name)
  cmake_parse_arguments(ARG "" "" "LIBRARIES;HEADERS" ${ARGN})
  file(WRITE ${PROJECT_BINARY_DIR}/${name}.cpp "")
  add_library(${name} OBJECT EXCLUDE_FROM_ALL ${PROJECT_BINARY_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE project_options Qt6::Core ${ARG_LIBRARIES})
  target_precompile_headers(${name} PRIVATE
    <QPointF> <QRectF> <QString> <QStringList> <QVariant>
    <algorithm> <chrono> <functional> <map> <memory> <optional> <string> <unordered_map> <utility> <variant> <vector>
    ${ARG_HEADERS})
endfunction()
function(kestrova_reuse_precompiled name precompiled)
  if(KESTROVA_PRECOMPILE)
    target_precompile_headers(${name} REUSE_FROM ${precompiled})
  endif()
endfunction()
if(KESTROVA_PRECOMPILE)
  kestrova_precompile(precompiled)
  kestrova_precompile(precompiled_widgets LIBRARIES Qt6::Widgets HEADERS <QPainter> <QWidget>)
endif()

# A static library for one folder. Its sources are listed by name; what it may include is what it links.
function(kestrova_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PRIVATE project_options)
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  kestrova_reuse_precompiled(${name} precompiled)
endfunction()

# The same for a folder of widgets.
function(kestrova_widget_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC Qt6::Widgets PRIVATE project_options)
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  kestrova_reuse_precompiled(${name} precompiled_widgets)
endfunction()
