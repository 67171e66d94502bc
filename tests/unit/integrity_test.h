#pragma once

#include "VXCloneUtil.h"
#include "engine_test.h"

namespace vxtest {

/// An engine on a television whose secure storage is ready and holds the clone key.
class IntegrityTest : public EngineTest {
 protected:
    IntegrityTest() {
        writeFile("/tmp/securestorage-ready", "");
        tv.setSecret("VX_CLONE_API_AES_KEY", key);
        tv.setSecret("VX_CLONE_API_AES_IV", iv);
    }
    ~IntegrityTest() override { EXPECT_EQ(tv.secretsHeld(), 0); }

    bool encipher(const fs::path& from, const fs::path& to) const {
        return CVXCloneUtil::EncryptDecryptFile(from.string(), to.string(), key, iv, CRYPT_OP_ENCRYPT);
    }
    bool decipher(const fs::path& from, const fs::path& to) const {
        return CVXCloneUtil::EncryptDecryptFile(from.string(), to.string(), key, iv, CRYPT_OP_DECRYPT);
    }

    /// Bytes without a pattern of the size of a block.
    static std::string someBytes(std::size_t count) {
        std::string bytes(count, '\0');
        unsigned state = 12345;
        for (char& byte : bytes) {
            state = state * 1103515245U + 12345U;
            byte = static_cast<char>(state >> 24U);
        }
        return bytes;
    }

    const std::string key = "0123456789abcdef0123456789ABCDEF";
    const std::string iv = "fedcba9876543210";
};

}  // namespace vxtest
