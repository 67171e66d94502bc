// ProductCloneInfo.txt as vxclone writes and reads it, for a television with any identity.

#include "cloning_app/package/identity.h"

#include "VXCloneHandler.h"
#include "VXCloneKeys.h"
#include "fuzz/input.h"
#include "fuzz/target.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/scripted/scripted_platform.h"

namespace vxfuzz {
namespace {

using vxclone::Identity;

bool isSame(const Identity& one, const Identity& other) {
    return one.model == other.model && one.productTag == other.productTag && one.tuner == other.tuner;
}

int numberIn(std::string_view bytes) {
    std::uint32_t number = 0;
    for (const char byte : bytes) {
        number = number << 8U | static_cast<unsigned char>(byte);
    }
    return static_cast<int>(number);
}

/// Checks and writes a television's identity, reads it again, and requires that the library accepts it.
void writeOwn(Input input) {
    vxtest::ScriptedPlatform& tv = vxtest::ScriptedPlatform::instance();
    tv.reset();
    tv.setFeature(kTunerSupportFeature, input.byte() & 1);
    tv.setTunerType(numberIn(input.take(sizeof(std::uint32_t))));
    tv.setModel(upToNul(input.until('\0')));
    tv.setProductTag(upToNul(input.rest()));

    const Identity own = vxclone::televisionIdentity();
    const auto text = vxclone::identityText(own);
    if (!text) {
        require(own.model->size() > 254 || own.productTag->size() > 127 ||
                    (*own.model + *own.productTag).find_first_of("\r\n") != std::string::npos,
                "an identity that a package can hold is accepted");
        requireShowable(text.error().sentence);
        return;
    }
    require(text->size() < vxclone::kMostIdentityBytes, "an identity is read whole");
    require(isSame(vxclone::parseIdentity(*text), own), "an identity is read as it was written");
    vxtest::writeFile("/tmp/area/ProductCloneInfo.txt", *text);
    require(VXCloneHandler().CheckDataValidity("/tmp/area") == 0,
            "the library takes an identity for its own");
}

/// If what was read can be written again, then reading that gives the same.
void readAny(std::string_view bytes) {
    const Identity read = vxclone::parseIdentity(std::string(bytes));
    if (const auto text = vxclone::identityText(read)) {
        require(isSame(vxclone::parseIdentity(*text), read),
                "an identity that was read is written as it was");
    } else {
        requireShowable(text.error().sentence);
    }
}

void run(std::string_view bytes) {
    Input input(bytes);
    input.byte() == 't' ? writeOwn(input) : readAny(input.rest());
}

const Target kIdentity("identity", run);

}  // namespace
}  // namespace vxfuzz
