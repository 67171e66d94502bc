// The file cipher when libcrypto fails. Its functions are wrapped in this executable.

#include <openssl/err.h>
#include <openssl/evp.h>

#include "integrity_test.h"

namespace vxtest {
namespace {

/// How many calls of each wrapped function still succeed. A negative number means all.
struct Faults {
    int contexts = -1;
    int inits = -1;
    int updates = -1;
    int keyLength = 0;
    int ivLength = 0;
};
Faults faults;

/// The number of times that a context was cleared of its key.
int resets = 0;

/// Whether this call fails. A failing function leaves an error in libcrypto's queue, as the real one does.
bool fails(int& left) {
    if (left < 0) {
        return false;
    }
    if (left-- > 0) {
        return false;
    }
    ERR_put_error(ERR_LIB_USER, 0, 7, __FILE__, __LINE__);
    return true;
}

}  // namespace

#define WRAPPED_NAME(name) __wrap_##name
#define REAL_NAME(name) __real_##name
// Two steps, so that a name that libcrypto has renamed by a macro is expanded first.
#define WRAPPED(name) WRAPPED_NAME(name)
#define REAL(name) REAL_NAME(name)

extern "C" {

EVP_CIPHER_CTX* REAL(EVP_CIPHER_CTX_new)();
EVP_CIPHER_CTX* WRAPPED(EVP_CIPHER_CTX_new)() {
    return fails(faults.contexts) ? nullptr : REAL(EVP_CIPHER_CTX_new)();
}

int REAL(EVP_CipherInit_ex)(EVP_CIPHER_CTX*, const EVP_CIPHER*, ENGINE*, const unsigned char*,
                            const unsigned char*, int);
int WRAPPED(EVP_CipherInit_ex)(EVP_CIPHER_CTX* context, const EVP_CIPHER* cipher, ENGINE* engine,
                               const unsigned char* key, const unsigned char* iv, int type) {
    return fails(faults.inits) ? 0 : REAL(EVP_CipherInit_ex)(context, cipher, engine, key, iv, type);
}

int REAL(EVP_CipherUpdate)(EVP_CIPHER_CTX*, unsigned char*, int*, const unsigned char*, int);
int WRAPPED(EVP_CipherUpdate)(EVP_CIPHER_CTX* context, unsigned char* out, int* produced,
                              const unsigned char* in, int count) {
    return fails(faults.updates) ? 0 : REAL(EVP_CipherUpdate)(context, out, produced, in, count);
}

int REAL(EVP_CIPHER_CTX_reset)(EVP_CIPHER_CTX*);
int WRAPPED(EVP_CIPHER_CTX_reset)(EVP_CIPHER_CTX* context) {
    ++resets;
    return REAL(EVP_CIPHER_CTX_reset)(context);
}

int REAL(EVP_CIPHER_CTX_key_length)(const EVP_CIPHER_CTX*);
int WRAPPED(EVP_CIPHER_CTX_key_length)(const EVP_CIPHER_CTX* context) {
    return faults.keyLength != 0 ? faults.keyLength : REAL(EVP_CIPHER_CTX_key_length)(context);
}

int REAL(EVP_CIPHER_CTX_iv_length)(const EVP_CIPHER_CTX*);
int WRAPPED(EVP_CIPHER_CTX_iv_length)(const EVP_CIPHER_CTX* context) {
    return faults.ivLength != 0 ? faults.ivLength : REAL(EVP_CIPHER_CTX_iv_length)(context);
}
}

namespace {

class CipherFaultTest : public IntegrityTest {
 protected:
    CipherFaultTest() {
        faults = Faults{};
        ERR_clear_error();
        writeFile(work("plain"), someBytes(3000));
    }

    std::string failureOf(const std::string& operation) const {
        std::array<char, 256> text{};
        ERR_error_string_n(ERR_PACK(ERR_LIB_USER, 0, 7), text.data(), text.size());
        return "E/35 sm_EncryptDecryptFile: ERROR: " + operation + " failed. OpenSSL error: " + text.data() +
               "\n";
    }
};

TEST_F(CipherFaultTest, contextIsClearedOfTheKeyAtTheEndAndAfterAFailure) {
    resets = 0;
    EXPECT_TRUE(encipher(work("plain"), work("out")));
    EXPECT_EQ(resets, 1);
    faults.updates = 0;
    EXPECT_FALSE(encipher(work("plain"), work("out")));
    EXPECT_EQ(resets, 2);
}

TEST_F(CipherFaultTest, contextThatCannotBeMadeFails) {
    faults.contexts = 0;
    EXPECT_FALSE(encipher(work("plain"), work("out")));
    EXPECT_EQ(tv.describedLog().back(), failureOf("EVP_CIPHER_CTX_new"));
    EXPECT_EQ(readFile(work("out")), "");
}

TEST_F(CipherFaultTest, firstInitialisationThatFailsEndsIt) {
    faults.inits = 0;
    EXPECT_FALSE(encipher(work("plain"), work("out")));
    EXPECT_EQ(tv.describedLog().back(), failureOf("EVP_CipherInit_ex"));
}

TEST_F(CipherFaultTest, secondInitialisationThatFailsEndsIt) {
    faults.inits = 1;
    EXPECT_FALSE(encipher(work("plain"), work("out")));
    EXPECT_EQ(tv.describedLog().back(), failureOf("EVP_CipherInit_ex"));
}

TEST_F(CipherFaultTest, updateThatFailsLeavesWhatWasWritten) {
    faults.updates = 2;
    EXPECT_FALSE(encipher(work("plain"), work("out")));
    EXPECT_EQ(tv.describedLog().back(), failureOf("EVP_CipherUpdate"));
    EXPECT_EQ(readFile(work("out")).size(), 2048U);
}

using CipherFaultDeathTest = CipherFaultTest;

TEST_F(CipherFaultDeathTest, unexpectedKeyLengthEndsTheProcess) {
    faults.keyLength = 16;
    EXPECT_DEATH(encipher(work("plain"), work("out")),
                 "assertion failed: EVP_CIPHER_CTX_key_length\\(ctx\\) == AES_256_KEY_SIZE");
}

TEST_F(CipherFaultDeathTest, unexpectedVectorLengthEndsTheProcess) {
    faults.ivLength = 8;
    EXPECT_DEATH(encipher(work("plain"), work("out")),
                 "assertion failed: EVP_CIPHER_CTX_iv_length\\(ctx\\) == AES_BLOCK_SIZE");
}

}  // namespace
}  // namespace vxtest
