cmake -B build -DCMAKE_PREFIX_PATH="$KINEDLL"
cmake --build build
build/cell
