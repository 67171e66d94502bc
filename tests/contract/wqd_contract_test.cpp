// What every key installation must do.

#include "platform/secure_storage.h"
#include "platform/wqd.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

class Wqd : public ContractTest {
 protected:
    int install() const { return wqd_install_from_file(world->keyFile().c_str(), 2, 0); }

    std::string read(const char* name) const {
        char* data = nullptr;
        size_t length = 0;
        const ss_credential credential = ss_init_credential(world->clientIdentifier().data(), 1, 0);
        const int status = ss_read(&data, &length, 0, 0, name, credential, 33);
        const std::string value = status == 0 ? std::string(data, length) : "(none)";
        ss_free_buffer(data);
        return value;
    }
};

TEST_F(Wqd, nothingIsThereBeforeTheInstallation) {
    EXPECT_EQ(read("VX_CLONE_API_AES_KEY"), "(none)");
    EXPECT_EQ(read("VX_CLONE_API_AES_IV"), "(none)");
}

TEST_F(Wqd, installBringsKeyAndInitialisationVector) {
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(read("VX_CLONE_API_AES_KEY"), world->installedKey());
    EXPECT_EQ(read("VX_CLONE_API_AES_IV"), world->installedIv());
}

TEST_F(Wqd, secondInstallIsASuccessAndChangesNothing) {
    ASSERT_EQ(install(), 0);
    const int again = install();
    EXPECT_TRUE(again == 0 || again == 2) << again;
    EXPECT_EQ(read("VX_CLONE_API_AES_KEY"), world->installedKey());
}

TEST_F(Wqd, installThatIsToldToFailInstallsNothing) {
    world->failOnce("wqd_install_from_file", -4, 1);
    EXPECT_EQ(install(), -4);
    EXPECT_EQ(read("VX_CLONE_API_AES_KEY"), "(none)");
    EXPECT_EQ(install(), 0);
}

}  // namespace
}  // namespace vxcontract
