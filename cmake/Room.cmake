# A room is one folder at the top of the tree and one static library, oe_<room>.
#
# Its headers are found as "<room>/Header.h" and only by targets that link it: each room's include
# directory holds a single link to its folder, so an include that runs up does not compile.
#
#   add_room(geo DEPENDS common)     sources: every .cpp of the folder
function(add_room name)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  set(include_dir ${PROJECT_BINARY_DIR}/rooms/${name})
  file(MAKE_DIRECTORY ${include_dir})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${name} ${include_dir}/${name} SYMBOLIC)

  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(sources)
    add_library(oe_${name} STATIC ${sources})
    target_include_directories(oe_${name} PUBLIC ${include_dir})
    target_link_libraries(oe_${name} PRIVATE oe_settings)
    set(visibility PUBLIC)
  else()
    add_library(oe_${name} INTERFACE)
    target_include_directories(oe_${name} INTERFACE ${include_dir})
    set(visibility INTERFACE)
  endif()
  foreach(lower IN LISTS ARG_DEPENDS)
    target_link_libraries(oe_${name} ${visibility} oe_${lower})
  endforeach()
endfunction()
