# bgrkit's libraries for the Windows cross build. Debian has no MinGW builds of
# them: CLI11 and nlohmann-json are headers only and are taken from the host's
# packages; libcsv is built from Debian's source package, fetched into the build
# folder when missing. Cairo is left out, so this bgrkit writes SVG only.
set(BGRKIT_CSV_SOURCE "${CMAKE_BINARY_DIR}/deps/libcsv" CACHE PATH "libcsv's source folder (libcsv.c and csv.h)")
option(BGRKIT_FETCH_CSV "Fetch libcsv's Debian source package when it is missing" ON)

find_path(KIT_CLI11_DIR CLI/CLI.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH NO_DEFAULT_PATH)
find_path(KIT_JSON_DIR nlohmann/json.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH NO_DEFAULT_PATH)
# libosmium and protozero are headers too; PBF needs zlib, which Debian has for
# MinGW (libz-mingw-w64-dev). No expat or bzip2 there: this bgrkit reads PBF only.
find_path(KIT_OSMIUM_DIR osmium/osm.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH NO_DEFAULT_PATH)
find_path(KIT_PROTOZERO_DIR protozero/pbf_reader.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH NO_DEFAULT_PATH)
set(ZLIB_USE_STATIC_LIBS ON)  # the executables carry no DLL
find_package(ZLIB QUIET)
if(NOT EXISTS "${BGRKIT_CSV_SOURCE}/libcsv.c" AND BGRKIT_FETCH_CSV)
  message(STATUS "fetching libcsv's source package into ${BGRKIT_CSV_SOURCE}")
  execute_process(COMMAND bash "${CMAKE_SOURCE_DIR}/scripts/fetch-libcsv.sh" "${BGRKIT_CSV_SOURCE}")
endif()

if(KIT_CLI11_DIR AND KIT_JSON_DIR AND KIT_OSMIUM_DIR AND KIT_PROTOZERO_DIR AND ZLIB_FOUND
   AND EXISTS "${BGRKIT_CSV_SOURCE}/libcsv.c")
  # only these two folders of the host's headers: the rest of /usr/include is glibc's
  set(kit_include "${CMAKE_BINARY_DIR}/kit-include")
  file(COPY "${KIT_CLI11_DIR}/CLI" "${KIT_JSON_DIR}/nlohmann" "${KIT_OSMIUM_DIR}/osmium"
       "${KIT_PROTOZERO_DIR}/protozero" DESTINATION "${kit_include}")
  add_library(kit_headers INTERFACE)
  target_include_directories(kit_headers SYSTEM INTERFACE "${kit_include}")
  enable_language(C)
  add_library(csv STATIC "${BGRKIT_CSV_SOURCE}/libcsv.c")
  target_include_directories(csv SYSTEM PUBLIC "${BGRKIT_CSV_SOURCE}")
  target_compile_options(csv PRIVATE -w)  # not our code: its warnings are upstream's
  find_package(Threads REQUIRED)
  set(KIT_LIBRARIES kit_headers csv ZLIB::ZLIB Threads::Threads)
  set(KIT_PNG_SOURCE src/kit/png_none.cpp)
  set(KIT_OSM_SOURCE src/kit/osm_pbf_only.cpp)
  set(KIT_FOUND ON)
else()
  set(KIT_FOUND OFF)
  set(KIT_MISSING "libcli11-dev, nlohmann-json3-dev, libosmium2-dev, libprotozero-dev, libz-mingw-w64-dev and libcsv's source in BGRKIT_CSV_SOURCE")
endif()
