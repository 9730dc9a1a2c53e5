cc loaded.c -I"$KINEDLL/include" -o loaded -ldl
./loaded "$KINEDLL/lib/libKineDll.so.1" exports.txt
