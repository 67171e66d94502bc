// Copies the files of one directory into another as a clone does: bench_copy_directory FROM TO

#include <cstdio>

#include "VXCloneHandler.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: bench_copy_directory FROM TO\n", stderr);
        return 2;
    }
    VXCloneHandler handler;
    return handler.m_CopyDirectory(argv[1], argv[2]) ? 0 : 1;
}
