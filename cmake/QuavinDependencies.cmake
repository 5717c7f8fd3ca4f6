# The libraries that are called besides the engine; docs/dependencies.md tells why each is there.

# Debian's header-only packages serve every target system, but stand among the build system's own
# headers. A folder of links shows a cross build them alone.
if(CMAKE_CROSSCOMPILING)
  set(quavin_headers "${PROJECT_BINARY_DIR}/header-only")
  file(MAKE_DIRECTORY "${quavin_headers}")
  foreach(header /usr/include/rapidjson /usr/include/utf8cpp/utf8.h /usr/include/utf8cpp/utf8 /usr/include/CLI)
    get_filename_component(name "${header}" NAME)
    if(EXISTS "${header}")
      file(CREATE_LINK "${header}" "${quavin_headers}/${name}" SYMBOLIC)
    endif()
  endforeach()
  # Where they are missing, or named by the user, the rest of this file decides.
  set(there PATHS "${quavin_headers}" NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  find_path(RAPIDJSON_INCLUDE_DIRS rapidjson/document.h ${there})
  find_path(QUAVIN_UTFCPP_INCLUDE_DIR utf8.h ${there})
  find_path(QUAVIN_CLI11_INCLUDE_DIR CLI/CLI.hpp ${there})
endif()

if(NOT RAPIDJSON_INCLUDE_DIRS)
  find_package(RapidJSON QUIET)
endif()
if(NOT RapidJSON_FOUND AND NOT RAPIDJSON_INCLUDE_DIRS)
  find_path(RAPIDJSON_INCLUDE_DIRS rapidjson/document.h REQUIRED)
endif()
find_path(QUAVIN_UTFCPP_INCLUDE_DIR utf8.h PATH_SUFFIXES utf8cpp REQUIRED)
if(NOT WIN32)
  find_package(OpenSSL REQUIRED COMPONENTS Crypto)
endif()
find_package(Threads REQUIRED)
if(QUAVIN_BUILD_TOOLS)
  find_path(QUAVIN_CLI11_INCLUDE_DIR CLI/CLI.hpp REQUIRED)
endif()
