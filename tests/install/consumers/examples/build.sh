cmake -S "$KINEDLL/share/doc/KineDll/examples" -B build -DCMAKE_PREFIX_PATH="$KINEDLL"
cmake --build build
(cd build && ctest --no-tests=error)
