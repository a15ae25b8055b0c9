# How every target of the tree is compiled and linked, and the functions that the folders use.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
# A module is found by its bare name: no "lib" in front.
set(CMAKE_SHARED_LIBRARY_PREFIX "")

add_library(build_settings INTERFACE)
target_compile_definitions(build_settings INTERFACE
  UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601 _GLIBCXX_ASSERTIONS)
target_compile_options(build_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Werror
  $<$<CONFIG:Debug>:-fsanitize=undefined -fsanitize-undefined-trap-on-error>)
# An include names its file from src/ or from the top of the tree.
target_include_directories(build_settings INTERFACE "${CMAKE_SOURCE_DIR}/src" "${CMAKE_SOURCE_DIR}")
# The static runtime leaves system DLLs as the only imports.
target_link_options(build_settings INTERFACE
  -static -static-libgcc -static-libstdc++
  -Wl,--dynamicbase -Wl,--nxcompat -Wl,--no-insert-timestamp
  $<$<CONFIG:Release>:-s>)

# smh_add_library(<target> SOURCES ... LINK ...): one layer; LINK names the layers it may include from.
function(smh_add_library target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINK")
  add_library(${target} STATIC ${ARG_SOURCES})
  set_property(GLOBAL APPEND PROPERTY SMH_TARGETS ${target})
  target_link_libraries(${target} PUBLIC ${ARG_LINK} build_settings)
endfunction()

# smh_add_module(<target> SOURCES ... LINK ...): a DLL with a .def among its sources. Its entry point gives back what
# the static runtime keeps (infra/module_runtime).
function(smh_add_module target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINK")
  add_library(${target} SHARED ${ARG_SOURCES})
  set_property(GLOBAL APPEND PROPERTY SMH_TARGETS ${target})
  target_link_libraries(${target} PRIVATE ${ARG_LINK} infra_module_runtime build_settings)
  target_link_options(${target} PRIVATE -Wl,--entry=_ModuleStartup@12)
endfunction()

# smh_add_program(<target> SOURCES ... LINK ...): a console program.
function(smh_add_program target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINK")
  add_executable(${target} ${ARG_SOURCES})
  set_property(GLOBAL APPEND PROPERTY SMH_TARGETS ${target})
  target_link_libraries(${target} PRIVATE ${ARG_LINK} build_settings)
  target_link_options(${target} PRIVATE -municode)
endfunction()

# layers.tsv, for tools/layers.py, once all targets are known: a row for each of the functions' targets with its
# folder, kind, sources and what it links.
function(smh_write_layers)
  get_property(targets GLOBAL PROPERTY SMH_TARGETS)
  set(rows)
  foreach(target IN LISTS targets)
    get_target_property(folder ${target} SOURCE_DIR)
    file(RELATIVE_PATH folder "${CMAKE_SOURCE_DIR}" "${folder}")
    get_target_property(type ${target} TYPE)
    get_target_property(sources ${target} SOURCES)
    get_target_property(links ${target} LINK_LIBRARIES)
    string(APPEND rows "${target}\t${folder}\t${type}\t${sources}\t${links}\n")
  endforeach()
  file(WRITE "${CMAKE_BINARY_DIR}/layers.tsv" "${rows}")
endfunction()
cmake_language(DEFER CALL smh_write_layers)
