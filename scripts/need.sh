# Installs from the machine's packages what the named commands and headers need,
# when they are missing; sourced by the other scripts.
need_packages() {
  local missing=()
  command -v cmake >/dev/null || missing+=(cmake)
  command -v g++ >/dev/null || missing+=(g++)
  for want in "$@"; do
    case "$want" in
      gtest) [ -f /usr/include/gtest/gtest.h ] || missing+=(libgtest-dev) ;;
      benchmark) [ -f /usr/include/benchmark/benchmark.h ] || missing+=(libbenchmark-dev) ;;
      valgrind) command -v valgrind >/dev/null || missing+=(valgrind) ;;
      clang) command -v clang++ >/dev/null || missing+=(clang) ;;
      windows)
        command -v x86_64-w64-mingw32-g++-posix >/dev/null || missing+=(g++-mingw-w64-x86-64)
        command -v wine >/dev/null || missing+=(wine wine64)
        command -v dpkg-source >/dev/null || missing+=(dpkg-dev)
        [ -f /usr/x86_64-w64-mingw32/include/zlib.h ] || missing+=(libz-mingw-w64-dev)
        ;;
      kit)
        [ -f /usr/include/CLI/CLI.hpp ] || missing+=(libcli11-dev)
        [ -f /usr/include/csv.h ] || missing+=(libcsv-dev)
        [ -f /usr/include/nlohmann/json.hpp ] || missing+=(nlohmann-json3-dev)
        [ -f /usr/include/cairo/cairo.h ] || missing+=(libcairo2-dev)
        command -v pkg-config >/dev/null || missing+=(pkg-config)
        ls /usr/lib/*/librsvg-2.so.2 >/dev/null 2>&1 || missing+=(librsvg2-2)
        [ -f /usr/include/osmium/osm.hpp ] || missing+=(libosmium2-dev)
        [ -f /usr/include/protozero/pbf_reader.hpp ] || missing+=(libprotozero-dev)
        [ -f /usr/include/zlib.h ] || missing+=(zlib1g-dev)
        [ -f /usr/include/bzlib.h ] || missing+=(libbz2-dev)
        [ -f /usr/include/expat.h ] || missing+=(libexpat1-dev)
        [ -f /usr/share/javascript/leaflet/leaflet.js ] || missing+=(libjs-leaflet)
        ;;
      browser)
        command -v chromium >/dev/null || missing+=(chromium)
        command -v chromedriver >/dev/null || missing+=(chromium-driver)
        /usr/bin/python3 -c 'import selenium' 2>/dev/null || missing+=(python3-selenium)
        ;;
    esac
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  if [ "$(id -u)" -ne 0 ] || ! command -v apt-get >/dev/null; then
    echo "please install: ${missing[*]}" >&2
    return 1
  fi
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${missing[@]}" >/dev/null
}
