# The libraries used besides the engine; docs/dependencies.md says why each is needed.

# Debian's header-only packages work for every target system, but are installed among the build system's
# own headers. A folder of links exposes only them to a cross build.
if(CMAKE_CROSSCOMPILING)
  set(QUAVIN_HOST_PREFIX "/usr" CACHE PATH "Where the machine that builds has header-only libraries and GoogleTest's sources")
  set(host_include "${QUAVIN_HOST_PREFIX}/include")
  set(quavin_headers "${PROJECT_BINARY_DIR}/header-only")
  file(MAKE_DIRECTORY "${quavin_headers}")
  foreach(header "${host_include}/rapidjson" "${host_include}/utf8cpp/utf8.h" "${host_include}/utf8cpp/utf8" "${host_include}/CLI"
                 "${host_include}/xxhash.h")
    get_filename_component(name "${header}" NAME)
    if(EXISTS "${header}")
      file(CREATE_LINK "${header}" "${quavin_headers}/${name}" SYMBOLIC)
    endif()
  endforeach()
  # If they are missing, or the user names them, the rest of this file finds them.
  set(there PATHS "${quavin_headers}" NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  find_path(RAPIDJSON_INCLUDE_DIRS rapidjson/document.h ${there})
  find_path(QUAVIN_UTFCPP_INCLUDE_DIR utf8.h ${there})
  find_path(QUAVIN_CLI11_INCLUDE_DIR CLI/CLI.hpp ${there})
  find_path(QUAVIN_XXHASH_INCLUDE_DIR xxhash.h ${there})
endif()

if(NOT RAPIDJSON_INCLUDE_DIRS)
  find_package(RapidJSON QUIET)
endif()
if(NOT RapidJSON_FOUND AND NOT RAPIDJSON_INCLUDE_DIRS)
  find_path(RAPIDJSON_INCLUDE_DIRS rapidjson/document.h REQUIRED)
endif()
find_path(QUAVIN_UTFCPP_INCLUDE_DIR utf8.h PATH_SUFFIXES utf8cpp REQUIRED)
find_path(QUAVIN_XXHASH_INCLUDE_DIR xxhash.h REQUIRED)
if(NOT WIN32)
  find_package(OpenSSL REQUIRED COMPONENTS Crypto)
endif()
find_package(Threads REQUIRED)
if(QUAVIN_BUILD_TOOLS)
  find_path(QUAVIN_CLI11_INCLUDE_DIR CLI/CLI.hpp REQUIRED)
endif()
