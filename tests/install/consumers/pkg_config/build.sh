export PKG_CONFIG_PATH="$KINEDLL/lib/pkgconfig"
make cell
LD_LIBRARY_PATH="$KINEDLL/lib" ./cell
