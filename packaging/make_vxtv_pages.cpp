#include <iostream>

#include "packaging/vxtv_manual.h"

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: make_vxtv_pages SHARE_FOLDER\n";
        return 2;
    }
    return vxpages::writePages(vxpages::vxtvManual(), arguments[1]);
}
