#!/bin/sh
# Runs LLVM's linker in place of the one that g++ would start: g++ -wrapper cmake/lld.sh. (MinGW-w64's
# g++ has no other way to it: -fuse-ld finds only linkers beside its own.)
shift
exec ld.lld "$@"
