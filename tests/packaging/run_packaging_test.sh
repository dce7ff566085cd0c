#!/usr/bin/env bash
# Checks that dmcommon can be used the three ways its README promises: embedded
# with add_subdirectory, installed and found with find_package, and installed
# and linked with pkg-config flags. Registered by tests/packaging/CMakeLists.txt;
# one step per call:
#
#   run_packaging_test.sh add_subdirectory|install|find_package|pkg_config|
#                         example_find_package|example_pkg_config \
#     --source=DIR --build=DIR --work=DIR --cmake=PATH --cxx=PATH \
#     --generator=NAME --build-type=TYPE --cxx-flags=FLAGS \
#     --libdir=DIR --includedir=DIR --bindir=DIR --tool=0|1 --version=X.Y.Z
#
# `install` installs the build tree into WORK/prefix (with dmtool when
# --tool=1); the other modes but `add_subdirectory` use that prefix (CTest
# orders them with a fixture). The `example_*` modes build examples/consumer
# and run it on examples/data/seattle-weather.xml.
set -euo pipefail

mode=${1:?usage: run_packaging_test.sh MODE --option=value...}
shift

source_dir= build_dir= work_dir= cmake=cmake cxx=c++ generator= build_type= cxx_flags=
libdir=lib includedir=include bindir=bin tool=0 version=
for arg in "$@"; do
  case $arg in
    --source=*) source_dir=${arg#*=} ;;
    --build=*) build_dir=${arg#*=} ;;
    --work=*) work_dir=${arg#*=} ;;
    --cmake=*) cmake=${arg#*=} ;;
    --cxx=*) cxx=${arg#*=} ;;
    --generator=*) generator=${arg#*=} ;;
    --build-type=*) build_type=${arg#*=} ;;
    --cxx-flags=*) cxx_flags=${arg#*=} ;;
    --libdir=*) libdir=${arg#*=} ;;
    --includedir=*) includedir=${arg#*=} ;;
    --bindir=*) bindir=${arg#*=} ;;
    --tool=*) tool=${arg#*=} ;;
    --version=*) version=${arg#*=} ;;
    *) echo "run_packaging_test: unknown argument $arg" >&2; exit 2 ;;
  esac
done
: "${source_dir:?--source is required}" "${work_dir:?--work is required}"

consumer_src=$source_dir/tests/packaging/consumer
example_src=$source_dir/examples/consumer
example_document=$source_dir/examples/data/seattle-weather.xml
prefix=$work_dir/prefix

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

step() {
  echo "+ $*"
  "$@"
}

# Configures and builds the consumer project in $1 with extra cache arguments;
# the project's sources are in $project_src (the test consumer by default).
build_consumer() {
  local dir=$1
  shift
  local args=(-S "${project_src:-$consumer_src}" -B "$dir" "-DCMAKE_CXX_COMPILER=$cxx"
              "-DCMAKE_CXX_FLAGS=$cxx_flags")
  if [ -n "$generator" ]; then args+=(-G "$generator"); fi
  if [ -n "$build_type" ]; then args+=("-DCMAKE_BUILD_TYPE=$build_type"); fi
  step "$cmake" "${args[@]}" "$@"
  step "$cmake" --build "$dir" --parallel 2
}

run_consumer() {
  local binary=$1
  local output
  echo "+ $binary"
  output=$("$binary") || fail "$binary exited with $? (output: $output)"
  echo "$output"
  [[ $output == "b=1 "* ]] || fail "$binary printed '$output', expected b=1"
}

# Runs the example consumer on the shipped document; it must list the six
# fields of the Seattle weather data.
run_example() {
  local binary=$1
  local output
  echo "+ $binary $example_document"
  output=$("$binary" "$example_document") || fail "$binary exited with $? (output: $output)"
  echo "$output"
  [[ $output == *"date date continuous"* && $output == *"weather string nominal"* &&
     $output == *"6 fields" ]] || fail "$binary did not list the document's fields"
}

require_installed_prefix() {
  [ -f "$prefix/$libdir/cmake/dmcommon/dmcommonConfig.cmake" ] ||
    fail "no installed dmcommon in $prefix (the packaging.install test sets it up)"
}

case $mode in
  add_subdirectory)
    # The library's own tests and install rules must stay out of an embedding
    # project: the consumer's CMakeLists.txt rejects test targets, and
    # installing the consumer (which has no install rules) must install nothing.
    dir=$work_dir/add_subdirectory
    rm -rf "$dir/prefix"
    build_consumer "$dir/build" "-DDMCOMMON_SOURCE_DIR=$source_dir"
    run_consumer "$dir/build/consumer"
    step "$cmake" --install "$dir/build" --prefix "$dir/prefix"
    if [ -d "$dir/prefix" ] && [ -n "$(find "$dir/prefix" -type f)" ]; then
      find "$dir/prefix" -type f >&2
      fail "installing an embedding project installed dmcommon's files"
    fi
    ;;

  install)
    : "${build_dir:?--build is required}"
    rm -rf "$prefix"
    step "$cmake" --install "$build_dir" --prefix "$prefix"

    expected=(
      "$libdir/libdmcommon.so"
      "$libdir/libdmcommon.so.${version%%.*}"
      "$libdir/libdmcommon.so.$version"
      "$libdir/cmake/dmcommon/dmcommonConfig.cmake"
      "$libdir/cmake/dmcommon/dmcommonConfigVersion.cmake"
      "$libdir/cmake/dmcommon/dmcommonTargets.cmake"
      "$libdir/pkgconfig/dmcommon.pc"
      "$includedir/dmcommon/dmcommon.h"
      "$includedir/dmcommon/dmcommon_export.h"
      "$includedir/dmcommon/xml/dmxmlwrapper.h"
      "$includedir/dmcommon/xml/vocabulary/xmlelement.h"
    )
    for file in "${expected[@]}"; do
      [ -e "$prefix/$file" ] || fail "$file was not installed"
    done

    if [ "$tool" = 1 ]; then
      # The installed tool must find the installed library on its own.
      [ -x "$prefix/$bindir/dmtool" ] || fail "$bindir/dmtool was not installed"
      step env -u LD_LIBRARY_PATH "$prefix/$bindir/dmtool" check "$example_document" ||
        fail "the installed dmtool does not run"
    fi

    internal=$(find "$prefix/$includedir" -name '*_internal.h')
    [ -z "$internal" ] || fail "private headers were installed: $internal"

    # Every installed header compiles on its own against the installed tree.
    count=0
    while IFS= read -r header; do
      relative=${header#"$prefix/$includedir/"}
      printf '#include "%s"\n' "$relative" |
        "$cxx" -std=c++17 -fsyntax-only -Wall -Wextra -Wpedantic -Werror \
          -I "$prefix/$includedir" -x c++ - ||
        fail "installed header $relative does not compile on its own"
      count=$((count + 1))
    done < <(find "$prefix/$includedir" -name '*.h' | sort)
    echo "$count installed headers compile on their own"
    ;;

  find_package)
    require_installed_prefix
    dir=$work_dir/find_package
    rm -rf "$dir"
    build_consumer "$dir" "-DCMAKE_PREFIX_PATH=$prefix" -DCMAKE_FIND_PACKAGE_NO_PACKAGE_REGISTRY=ON
    found_dir=$(sed -n 's/^dmcommon_DIR:PATH=//p' "$dir/CMakeCache.txt")
    [ "$found_dir" = "$prefix/$libdir/cmake/dmcommon" ] ||
      fail "find_package found dmcommon in '$found_dir', not in $prefix"
    run_consumer "$dir/consumer"
    ;;

  pkg_config)
    require_installed_prefix
    dir=$work_dir/pkg_config
    rm -rf "$dir"
    mkdir -p "$dir"
    export PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig
    step pkg-config --exists --print-errors dmcommon
    actual_version=$(pkg-config --modversion dmcommon)
    [ "$actual_version" = "$version" ] ||
      fail "dmcommon.pc says version $actual_version, expected $version"
    # The requirements (Xerces-C, ICU) must resolve for static links too.
    step pkg-config --static --libs dmcommon
    pc_libdir=$(pkg-config --variable=libdir dmcommon)
    [ "$(cd "$pc_libdir" && pwd -P)" = "$(cd "$prefix/$libdir" && pwd -P)" ] ||
      fail "dmcommon.pc points at libdir $pc_libdir, not at $prefix/$libdir"
    read -r -a cflags <<<"$(pkg-config --cflags dmcommon)"
    read -r -a libs <<<"$(pkg-config --libs dmcommon)"
    # shellcheck disable=SC2086  # the flags are a list of words
    step "$cxx" -std=c++17 $cxx_flags "${cflags[@]}" "$consumer_src/main.cpp" \
      -o "$dir/consumer" "${libs[@]}" "-Wl,-rpath,$pc_libdir"
    run_consumer "$dir/consumer"
    ;;

  example_find_package)
    require_installed_prefix
    dir=$work_dir/example_find_package
    rm -rf "$dir"
    project_src=$example_src build_consumer "$dir" "-DCMAKE_PREFIX_PATH=$prefix" \
      -DCMAKE_FIND_PACKAGE_NO_PACKAGE_REGISTRY=ON
    run_example "$dir/consumer"
    ;;

  example_pkg_config)
    require_installed_prefix
    dir=$work_dir/example_pkg_config
    rm -rf "$dir"
    mkdir -p "$dir"
    export PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig
    pc_libdir=$(pkg-config --variable=libdir dmcommon)
    read -r -a cflags <<<"$(pkg-config --cflags dmcommon)"
    read -r -a libs <<<"$(pkg-config --libs dmcommon)"
    # shellcheck disable=SC2086  # the flags are a list of words
    step "$cxx" -std=c++17 $cxx_flags "${cflags[@]}" "$example_src/main.cpp" \
      -o "$dir/consumer" "${libs[@]}" "-Wl,-rpath,$pc_libdir"
    run_example "$dir/consumer"
    ;;

  *)
    echo "run_packaging_test: unknown mode $mode" >&2
    exit 2
    ;;
esac

echo "packaging test '$mode' passed"
