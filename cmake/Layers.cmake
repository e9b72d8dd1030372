# Every folder of the house is a layer: a target of its own that sees the headers of the layers it names and no others.
#
# Files include each other by their path from the top ("platform/foundation/Clock.h"). So that this path is no back door
# into every folder, each layer's include directory holds one link, to that layer's folder alone: what a layer does not
# name in DEPENDS, it cannot include.

# vel_headers(<name> FOLDER <path from the include root> ROOT <include root> [DEPENDS <layer>...])
function(vel_headers name)
  cmake_parse_arguments(arg "" "FOLDER;ROOT" "DEPENDS" ${ARGN})
  set(view "${CMAKE_BINARY_DIR}/layers/${name}")
  get_filename_component(parent "${view}/${arg_FOLDER}" DIRECTORY)
  file(MAKE_DIRECTORY "${parent}")
  file(CREATE_LINK "${arg_ROOT}/${arg_FOLDER}" "${view}/${arg_FOLDER}" SYMBOLIC)
  add_library(${name}_headers INTERFACE)
  target_include_directories(${name}_headers INTERFACE "${view}")
  foreach(dependency IN LISTS arg_DEPENDS)
    target_link_libraries(${name}_headers INTERFACE ${dependency}_headers)
  endforeach()
endfunction()

# A layer of the shared platform library, which host and module both link so that process-wide state exists once.
# vel_platform_layer(<name> FOLDER <path> [SOURCES <file>...] [DEPENDS <layer>...])
function(vel_platform_layer name)
  cmake_parse_arguments(arg "" "FOLDER" "SOURCES;DEPENDS" ${ARGN})
  vel_headers(${name} FOLDER ${arg_FOLDER} ROOT "${PROJECT_SOURCE_DIR}/src" DEPENDS ${arg_DEPENDS})
  if(arg_SOURCES)
    add_library(${name}_objects OBJECT ${arg_SOURCES})
    target_link_libraries(${name}_objects PRIVATE ${name}_headers vel_warnings)
    target_sources(velplatform PRIVATE $<TARGET_OBJECTS:${name}_objects>)
  endif()
  add_library(${name} INTERFACE)
  target_link_libraries(${name} INTERFACE ${name}_headers velplatform)
endfunction()

# Any other layer: a static library.
# vel_layer(<name> FOLDER <path> ROOT <include root> SOURCES <file>... [DEPENDS <layer>...] [LIBRARIES <target>...])
function(vel_layer name)
  cmake_parse_arguments(arg "" "FOLDER;ROOT" "SOURCES;DEPENDS;LIBRARIES" ${ARGN})
  vel_headers(${name} FOLDER ${arg_FOLDER} ROOT ${arg_ROOT} DEPENDS ${arg_DEPENDS})
  add_library(${name} STATIC ${arg_SOURCES})
  target_link_libraries(${name} PUBLIC ${name}_headers ${arg_DEPENDS} PRIVATE ${arg_LIBRARIES} vel_warnings)
endfunction()
