# Header-only packages of the distribution. Only their own folders are seen: /usr/include itself must never
# reach a cross compiler. On Windows the packages come from CMAKE_PREFIX_PATH's include folder.

set(PACKAGE_INCLUDE "${CMAKE_BINARY_DIR}/package-include")
file(MAKE_DIRECTORY "${PACKAGE_INCLUDE}")
foreach(folder CLI nlohmann)
  find_path(${folder}_PARENT "${folder}" PATHS /usr/include "$ENV{MINGW_PREFIX}/include"
            NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  if(NOT EXISTS "${PACKAGE_INCLUDE}/${folder}")
    file(CREATE_LINK "${${folder}_PARENT}/${folder}" "${PACKAGE_INCLUDE}/${folder}" COPY_ON_ERROR SYMBOLIC)
  endif()
endforeach()
add_library(host_packages INTERFACE)
target_include_directories(host_packages SYSTEM INTERFACE "${PACKAGE_INCLUDE}")

set(GOOGLETEST_SOURCE "/usr/src/googletest" CACHE PATH "The sources of GoogleTest")
set(INSTALL_GTEST OFF)
add_subdirectory("${GOOGLETEST_SOURCE}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
