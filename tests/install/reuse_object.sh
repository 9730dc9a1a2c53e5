#!/bin/sh
# Stands before the compiler: copies the object file that another build has made of a source, or compiles.
#
#   reuse_object.sh SOURCES OBJECTS COMPILER ARGUMENT...
#
# OBJECTS/a.cpp.o was made of SOURCES/a.cpp; that both builds compile it by the same command is checked beforehand.
sources=$1
objects=$2
shift 2
target=
before=
for word; do
    [ "$before" = -o ] && target=$word
    before=$word
done
made=$objects/${before#"$sources/"}.o
if [ -n "$target" ] && [ -f "$made" ]; then
    exec cp "$made" "$target"
fi
exec "$@"
