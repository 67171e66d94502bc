#include "cloning_app/package/layout.h"

#include <gtest/gtest.h>

#include "cloning_app/base/tree_walk.h"

namespace vxclone {
namespace {

TEST(Layout, knownEntriesAreThoseOfTheLibrary) {
    for (const char* const name : {"ProductCloneInfo.txt", "validate.txt", "vconf", "logo", "VXMBRLogo",
                                   "VXHotel", "tvtimer", "tvs-chms", "org.vorta.homedatacontrol-service"}) {
        EXPECT_TRUE(isKnownEntry(name)) << name;
    }
    for (const char* const name : {"", "Vconf", "photos", "vconf.bak"}) {
        EXPECT_FALSE(isKnownEntry(name)) << name;
    }
}

TEST(Layout, sidecarsAreThoseOfDesktopSystems) {
    for (const char* const name : {".DS_Store", "Thumbs.db", "._vconf", "System Volume Information"}) {
        EXPECT_TRUE(isSidecar(name)) << name;
    }
    for (const char* const name : {".", "vconf", "_vconf", ".hidden"}) {
        EXPECT_FALSE(isSidecar(name)) << name;
    }
}

}  // namespace
}  // namespace vxclone
