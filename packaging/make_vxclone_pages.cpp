#include <iostream>

#include "packaging/vxclone_manual.h"

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: make_vxclone_pages SHARE_FOLDER\n";
        return 2;
    }
    return vxpages::writePages(vxpages::vxcloneManual(), arguments[1]);
}
