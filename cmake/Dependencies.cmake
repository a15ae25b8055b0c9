# The suites run under Wine; -DBUILD_TESTING=OFF leaves them and what only they need out.
option(BUILD_TESTING "Build the test suites" ON)

# Header-only packages of the distribution. Only their own folders are seen: /usr/include itself must never
# reach a cross compiler. In an MSYS2 shell they come from that environment's include folder.
set(package_folders CLI nlohmann)

set(PACKAGE_INCLUDE "${CMAKE_BINARY_DIR}/package-include")
file(MAKE_DIRECTORY "${PACKAGE_INCLUDE}")
foreach(folder IN LISTS package_folders)
  find_path(${folder}_PARENT "${folder}" PATHS "$ENV{MINGW_PREFIX}/include" /usr/include
            NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  if(NOT EXISTS "${PACKAGE_INCLUDE}/${folder}")
    file(CREATE_LINK "${${folder}_PARENT}/${folder}" "${PACKAGE_INCLUDE}/${folder}" COPY_ON_ERROR SYMBOLIC)
  endif()
endforeach()
add_library(host_packages INTERFACE)
target_include_directories(host_packages SYSTEM INTERFACE "${PACKAGE_INCLUDE}")

if(BUILD_TESTING)
  set(GOOGLETEST_SOURCE "/usr/src/googletest" CACHE PATH "The sources of GoogleTest")
  set(INSTALL_GTEST OFF)
  add_subdirectory("${GOOGLETEST_SOURCE}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
endif()
