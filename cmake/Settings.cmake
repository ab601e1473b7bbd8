# Language, warnings, sanitizers and output places, the same for every target.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

option(OVERLAYEDITOR_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)

add_library(oe_settings INTERFACE)
target_compile_options(oe_settings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Unique symbols would pin the plug-in in the process: dlclose could never unmap it.
  target_compile_options(oe_settings INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-fno-gnu-unique>)
endif()
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  # As Debian builds its packages: overwritten stacks and overrun buffers end the program, and no table of addresses can
  # be written once it runs.
  target_compile_options(oe_settings INTERFACE -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  target_link_options(oe_settings INTERFACE -Wl,-z,relro -Wl,-z,now)
endif()
if(OVERLAYEDITOR_SANITIZE)
  target_compile_options(oe_settings INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                               -fno-omit-frame-pointer)
  # g++ 12 sees overlapping copies in std::string's own code once it is instrumented.
  target_compile_options(oe_settings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
  target_link_options(oe_settings INTERFACE -fsanitize=address,undefined)
endif()
