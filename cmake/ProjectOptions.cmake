# What every target of ours is compiled with. Linked privately, so that it never leaks into a user of a target.
add_library(project_options INTERFACE)
target_compile_options(project_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
target_compile_definitions(project_options INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH
  KESTROVA_VERSION="${PROJECT_VERSION}")
target_include_directories(project_options INTERFACE ${PROJECT_SOURCE_DIR})

if(KESTROVA_SANITIZE)
  # Whole-program, since an instrumented library cannot be linked into a plain executable.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# A static library for one folder. Its sources are listed by name; what it may include is what it links.
function(kestrova_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PRIVATE project_options)
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
endfunction()
