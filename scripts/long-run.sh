# Sourced by the long random runs (monkey.sh, fuzz.sh): configures the build
# in BUILD_DIR (build-test) once, builds the given targets and runs headless.
#   build_for_run TARGET...
build="${BUILD_DIR:-build-test}"
build_for_run() {
  if [ ! -f "$build/CMakeCache.txt" ]; then
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DKELMAR_WERROR=ON -DKELMAR_BUILD_BENCH=OFF
  fi
  cmake --build "$build" --target "$@"
  export QT_QPA_PLATFORM="${QT_QPA_PLATFORM:-offscreen}"
}
