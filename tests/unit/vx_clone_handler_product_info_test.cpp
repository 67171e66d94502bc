// The kind of television that a package came from.

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "integrity_test.h"

namespace vxtest {
namespace {

/// The system call of the writer that fails next.
bool fchmodFails = false;
int closeFailsFor = -1;

/// The length of the file when its mode was set.
off_t lengthAtFchmod = 0;

}  // namespace

extern "C" {
int __real_fchmod(int descriptor, mode_t mode);
int __wrap_fchmod(int descriptor, mode_t mode) {
    struct stat status {};
    lengthAtFchmod = fstat(descriptor, &status) == 0 ? status.st_size : -1;
    return fchmodFails ? -1 : __real_fchmod(descriptor, mode);
}

int __real_close(int descriptor);
int __wrap_close(int descriptor) {
    const int result = __real_close(descriptor);
    return closeFailsFor == descriptor ? -1 : result;
}
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kTunerFeature =
    "com.kestrel/featureconf/vx_hotel_cloning.product_clone_info.tuner_support";

class ProductInfoTest : public EngineTest {
 protected:
    ProductInfoTest() {
        fchmodFails = false;
        closeFailsFor = -1;
        tv.setModel("HX-55");
        tv.setProductTag("TAG9");
        tv.setTunerType(1);
        tv.setFeature(kTunerFeature, 0);
        fs::create_directories(work("package"));
    }
    ~ProductInfoTest() override {
        fchmodFails = false;
        closeFailsFor = -1;
    }

    int check(const std::string& content) {
        writeFile(work("package/ProductCloneInfo.txt"), content);
        return engine.m_ReadCloneData("/tmp/area/package");
    }
    int write() { return engine.m_WriteCloneData("/tmp/area/info.txt"); }
    static std::string written() { return readFile(work("info.txt")); }

    std::vector<std::string> lastMessages(std::size_t count) const {
        const auto log = tv.describedLog();
        return {log.end() - static_cast<std::ptrdiff_t>(std::min(count, log.size())), log.end()};
    }
};

TEST_F(ProductInfoTest, writeMakesThreeTaggedLinesWithMode0664) {
    const mode_t before = umask(077);
    EXPECT_EQ(write(), 1);
    umask(before);
    EXPECT_EQ(written(), "<swModel>HX-55</swModel>\n<swTag>TAG9</swTag>\n<tuner>1</tuner>\n");
    EXPECT_EQ(fs::status(work("info.txt")).permissions(), fs::perms(0664));
    EXPECT_THAT(tv.transcript(),
                ElementsAre("E/35 m_WriteCloneData: File path to write data to /tmp/area/info.txt",
                            "system_info_get_value_string(0)", "system_info_get_value_string(199)",
                            "system_info_get_value_int(131)"));
}

TEST_F(ProductInfoTest, writeSetsTheModeOfTheWholeFile) {
    EXPECT_EQ(write(), 1);
    EXPECT_EQ(lengthAtFchmod, 62);
}

TEST_F(ProductInfoTest, writeLeavesNoFileOpen) {
    const auto openFiles = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    };
    // Called once before, because sanitizers open descriptors of their own at the first call.
    EXPECT_EQ(write(), 1);
    const auto before = openFiles();
    EXPECT_EQ(write(), 1);
    EXPECT_EQ(openFiles(), before);
    fchmodFails = true;
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(openFiles(), before);
}

TEST_F(ProductInfoTest, writeOverALongerFileReplacesIt) {
    writeFile(work("info.txt"), std::string(1000, 'x'));
    EXPECT_EQ(write(), 1);
    EXPECT_EQ(written().size(), 62U);
}

TEST_F(ProductInfoTest, writeOfATunerThatCannotBeReadWritesZero) {
    tv.answer("system_info_get_value_int", -1);
    EXPECT_EQ(write(), 1);
    EXPECT_THAT(written(), testing::HasSubstr("<tuner>0</tuner>\n"));
}

TEST_F(ProductInfoTest, writeOfANegativeTunerKeepsItsSign) {
    tv.setTunerType(-3);
    EXPECT_EQ(write(), 1);
    EXPECT_THAT(written(), testing::HasSubstr("<tuner>-3</tuner>\n"));
}

TEST_F(ProductInfoTest, writeOntoALinkIsRefused) {
    fs::create_symlink(work("target"), work("info.txt"));
    EXPECT_EQ(write(), 0);
    EXPECT_FALSE(fs::exists(work("target")));
    EXPECT_EQ(tv.describedLog().back(), "E/35 m_WriteCloneData: /tmp/area/info.txt is symbolic link");
    EXPECT_THAT(tv.calls(), IsEmpty());
}

TEST_F(ProductInfoTest, writeBelowAMissingDirectoryFails) {
    EXPECT_EQ(engine.m_WriteCloneData("/tmp/area/missing/info.txt"), 0);
    EXPECT_EQ(tv.describedLog().back(), "E/35 m_WriteCloneData: Could not open file");
    EXPECT_THAT(tv.calls(), IsEmpty());
}

TEST_F(ProductInfoTest, writeWithoutModelLeavesAnEmptyFile) {
    tv.answerOnce("system_info_get_value_string", -1, 1);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(written(), "");
    EXPECT_EQ(tv.describedLog().back(), "E/35 m_WriteCloneData: Could not get values for Model");
    EXPECT_EQ(tv.calls().size(), 3U);
}

TEST_F(ProductInfoTest, writeWithoutProductTagLeavesAnEmptyFile) {
    tv.answerOnce("system_info_get_value_string", -1, 2);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(written(), "");
    EXPECT_EQ(tv.messages().back(), "Could not get values for Model");
}

TEST_F(ProductInfoTest, writeWhereTheSecondOpenFailsLeavesAnEmptyFile) {
    // Called once before, because sanitizers open descriptors of their own at the first call.
    EXPECT_EQ(write(), 1);
    // Only one more descriptor is available, and the stream takes it.
    const int next = dup(0);
    close(next);
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit one = {static_cast<rlim_t>(next) + 1, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &one);
    const int result = write();
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(written(), "");
    EXPECT_EQ(tv.describedLog().back(), "E/35 m_WriteCloneData: fd fail");
}

TEST_F(ProductInfoTest, writeWhosePermissionsAreRefusedLeavesTheContent) {
    fchmodFails = true;
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(written().size(), 62U);
    EXPECT_EQ(tv.describedLog().back(),
              "E/35 m_WriteCloneData: Unable to set permission for /tmp/area/info.txt file");
}

TEST_F(ProductInfoTest, writeWhoseCloseFailsIsStillASuccess) {
    // The stream takes the next descriptor, the plain one is the second next.
    const int first = dup(0);
    const int second = dup(0);
    close(first);
    close(second);
    closeFailsFor = second;
    EXPECT_EQ(write(), 1);
    EXPECT_EQ(tv.describedLog().back(), "E/35 m_WriteCloneData: fd Close fail");
}

TEST_F(ProductInfoTest, writtenFileIsNeverAccepted) {
    EXPECT_EQ(engine.m_WriteCloneData("/tmp/area/package/ProductCloneInfo.txt"), 1);
    EXPECT_EQ(engine.m_ReadCloneData("/tmp/area/package"), 3);
}

TEST_F(ProductInfoTest, checkOfAPackageThatFitsIsZeroAndLogsEachStep) {
    EXPECT_EQ(check("TAG9\nHX-55\n1\n"), 0);
    EXPECT_THAT(
        tv.transcript(),
        ElementsAre(
            "E/35 m_ReadCloneData: File path to read data from /tmp/area/package/ProductCloneInfo.txt",
            "E/35 SafeFileOpen: strPath: /tmp/area/package/ProductCloneInfo.txt strMode: r",
            "system_info_get_value_string(199)", "E/35 m_ReadCloneData: Product Tag are same: TAG9",
            "system_info_get_value_string(0)", "E/35 m_ReadCloneData: SYSTEM_INFO_KEY_MODEL [0]",
            "E/35 m_ReadCloneData: Model are same", "system_info_get_value_int(131)",
            "E/35 m_ReadCloneData: TUNER TYPE 1",
            std::string("system_info_get_custom_bool(\"") + kTunerFeature + "\")",
            "E/35 m_ReadCloneData: TUNER type inside USB----- 1",
            "E/35 m_ReadCloneData: Model Name in USB = HX-55",
            "E/35 m_ReadCloneData: ProductName Name in USB = TAG9",
            "E/35 m_ReadCloneData: TUNER Name in USB = 1"));
}

TEST_F(ProductInfoTest, checkOfAPathWithTrailingSlashWorks) {
    writeFile(work("package/ProductCloneInfo.txt"), "TAG9\nHX-55\n1");
    EXPECT_EQ(engine.m_ReadCloneData("/tmp/area/package/"), 0);
}

TEST_F(ProductInfoTest, checkOfAMissingFileIsFive) {
    EXPECT_EQ(engine.m_ReadCloneData("/tmp/area/package"), 5);
    EXPECT_EQ(tv.describedLog().back(), "E/35 m_ReadCloneData: Failed to Open File");
    EXPECT_THAT(tv.calls(), IsEmpty());
}

TEST_F(ProductInfoTest, checkOfALinkToAValidFileIsFive) {
    writeFile(work("valid"), "TAG9\nHX-55\n1\n");
    fs::create_symlink(work("valid"), work("package/ProductCloneInfo.txt"));
    EXPECT_EQ(engine.m_ReadCloneData("/tmp/area/package"), 5);
}

TEST_F(ProductInfoTest, checkOfAnotherProductTagIsThree) {
    EXPECT_EQ(check("TAG8\nHX-55\n1\n"), 3);
    EXPECT_EQ(tv.describedLog().back(), "E/35 m_ReadCloneData: Product Tag are different: TAG8");
    EXPECT_THAT(tv.calls(), ElementsAre("system_info_get_value_string(199)"));
}

TEST_F(ProductInfoTest, checkOfAnEmptyTagLineFitsAnEmptyUnreadableOrTooLongTag) {
    tv.setProductTag("");
    EXPECT_EQ(check("\nHX-55\n1\n"), 0);
    tv.setProductTag(std::string(128, 't'));
    EXPECT_EQ(check("\nHX-55\n1\n"), 0);
    EXPECT_THAT(tv.describedLog(), testing::Contains("E/35 m_ReadCloneData: size is overflow!! [128]"));
    tv.answerOnce("system_info_get_value_string", -1, 1);
    EXPECT_EQ(check("\nHX-55\n1\n"), 0);
}

TEST_F(ProductInfoTest, checkOfAnEmptyTagLineFitsATagWithoutAValue) {
    tv.answerOnce("system_info_get_value_string", 0, 1);
    EXPECT_EQ(check("\nHX-55\n1\n"), 0);
}

TEST_F(ProductInfoTest, checkOfALineThatBeginsWithANulTakesItAsEmpty) {
    tv.setProductTag("");
    EXPECT_EQ(check(std::string("\0TAG9\nHX-55\n1\n", 14)), 0);
}

TEST_F(ProductInfoTest, checkOfAnEmptyTagLineDoesNotFitATag) {
    EXPECT_EQ(check("\nHX-55\n1\n"), 3);
}

TEST_F(ProductInfoTest, checkOfAnEmptyFileDoesNotFit) {
    EXPECT_EQ(check(""), 3);
}

TEST_F(ProductInfoTest, checkOfATagOf127CharactersComparesItWhole) {
    const std::string tag(127, 't');
    tv.setProductTag(tag);
    EXPECT_EQ(check(tag + "\nHX-55\n1\n"), 0);
    EXPECT_EQ(check(std::string(126, 't') + "u\nHX-55\n1\n"), 3);
}

TEST_F(ProductInfoTest, checkOfAnotherModelIsOne) {
    EXPECT_EQ(check("TAG9\nHX-65\n1\n"), 1);
    EXPECT_THAT(lastMessages(2), ElementsAre("E/35 m_ReadCloneData: SYSTEM_INFO_KEY_MODEL [0]",
                                             "E/35 m_ReadCloneData: Model are different"));
    EXPECT_THAT(tv.callsOf("system_info_get_value_int"), IsEmpty());
}

TEST_F(ProductInfoTest, checkOfAModelThatCannotBeReadIsOne) {
    tv.answerOnce("system_info_get_value_string", -4, 2);
    EXPECT_EQ(check("TAG9\nHX-55\n1\n"), 1);
    EXPECT_THAT(lastMessages(2), ElementsAre("E/35 m_ReadCloneData: SYSTEM_INFO_KEY_MODEL [-4]",
                                             "E/35 m_ReadCloneData: Model are different"));
}

TEST_F(ProductInfoTest, checkOfAModelWithoutAValueIsOne) {
    tv.answerOnce("system_info_get_value_string", 0, 2);
    EXPECT_EQ(check("TAG9\n\n1\n"), 1);
}

TEST_F(ProductInfoTest, checkWithoutTunerLineFitsWithoutATunerCheck) {
    EXPECT_EQ(check("TAG9\nHX-55\n"), 0);
    EXPECT_THAT(tv.callsOf("system_info_get_value_int"), IsEmpty());
    EXPECT_THAT(tv.callsOf("system_info_get_custom_bool"), IsEmpty());
    EXPECT_THAT(lastMessages(3), ElementsAre("E/35 m_ReadCloneData: Model Name in USB = HX-55",
                                             "E/35 m_ReadCloneData: ProductName Name in USB = TAG9",
                                             "E/35 m_ReadCloneData: TUNER Name in USB = "));
}

TEST_F(ProductInfoTest, checkOfAnotherTunerIsFourAfterAllLines) {
    EXPECT_EQ(check("TAG9\nHX-55\n2\n"), 4);
    EXPECT_THAT(lastMessages(5), ElementsAre("E/35 m_ReadCloneData: TUNER type inside USB----- 2",
                                             "E/35 m_ReadCloneData: TUNER type different",
                                             "E/35 m_ReadCloneData: Model Name in USB = HX-55",
                                             "E/35 m_ReadCloneData: ProductName Name in USB = TAG9",
                                             "E/35 m_ReadCloneData: TUNER Name in USB = 2"));
}

TEST_F(ProductInfoTest, checkOfATunerThatIsNoNumberReadsZero) {
    EXPECT_EQ(check("TAG9\nHX-55\nabc\n"), 4);
    tv.setTunerType(0);
    EXPECT_EQ(check("TAG9\nHX-55\nabc\n"), 0);
    EXPECT_EQ(check("TAG9\nHX-55\n\n"), 0);
}

TEST_F(ProductInfoTest, checkOfATunerReadsItsNumberLikeAStream) {
    EXPECT_EQ(check("TAG9\nHX-55\n  +1 tuner\n"), 0);
    tv.setTunerType(-5);
    EXPECT_EQ(check("TAG9\nHX-55\n-5\n"), 0);
    tv.setTunerType(2147483647);
    EXPECT_EQ(check("TAG9\nHX-55\n99999999999\n"), 0);
    tv.setTunerType(-2147483647 - 1);
    EXPECT_EQ(check("TAG9\nHX-55\n-99999999999\n"), 0);
}

TEST_F(ProductInfoTest, checkOfATunerThatCannotBeReadComparesWithZero) {
    tv.answer("system_info_get_value_int", -1);
    EXPECT_EQ(check("TAG9\nHX-55\n0\n"), 0);
    EXPECT_THAT(tv.messages(), testing::Not(testing::Contains("TUNER TYPE 0")));
}

TEST_F(ProductInfoTest, checkWithTheRegionalFlagWantsBitSeven) {
    tv.setFeature(kTunerFeature, 1);
    EXPECT_EQ(check("TAG9\nHX-55\n129\n"), 0);
    EXPECT_THAT(tv.describedLog(), testing::Contains("E/35 m_ReadCloneData: PHILIPINNES SET 129"));
    EXPECT_EQ(check("TAG9\nHX-55\n1\n"), 4);
    tv.setTunerType(2);
    EXPECT_EQ(check("TAG9\nHX-55\n130\n"), 0);
}

TEST_F(ProductInfoTest, checkWhoseFlagIsLeftAsItWasIsWithoutTheRegion) {
    tv.answer("system_info_get_custom_bool", 0);
    EXPECT_EQ(check("TAG9\nHX-55\n1\n"), 0);
}

TEST_F(ProductInfoTest, checkWhoseFlagCannotBeReadIsMinusOneAfterAllLines) {
    tv.answer("system_info_get_custom_bool", -2);
    EXPECT_EQ(check("TAG9\nHX-55\n1\n"), -1);
    EXPECT_THAT(lastMessages(4),
                ElementsAre("E/35 m_ReadCloneData: Error in getting tuner info , nResult:[-2]",
                            "E/35 m_ReadCloneData: Model Name in USB = HX-55",
                            "E/35 m_ReadCloneData: ProductName Name in USB = TAG9",
                            "E/35 m_ReadCloneData: TUNER Name in USB = 1"));
}

TEST_F(ProductInfoTest, checkTakesTheRestOfALongLineAsTheNext) {
    tv.setProductTag("");
    tv.setModel("rest");
    EXPECT_EQ(check(std::string(255, 't') + "rest\n1\n"), 3);
    EXPECT_EQ(tv.messages().back(), "Product Tag are different: " + std::string(255, 't'));
}

TEST_F(ProductInfoTest, checkSplitsALongModelLineIntoModelAndTuner) {
    const std::string model(255, 'm');
    tv.setModel(model);
    EXPECT_EQ(check("TAG9\n" + model + "1\n"), 0);
}

TEST_F(ProductInfoTest, publicOperationsConnectToTheTimersFirst) {
    EXPECT_EQ(engine.WriteDataToFile("/tmp/area/info.txt"), 1);
    EXPECT_EQ(tv.transcript()[0], "E/35 WriteDataToFile: ");
    EXPECT_EQ(tv.transcript()[1], "tvtimer_init()");
    EXPECT_THAT(tv.messages(), testing::Not(testing::Contains("failed to init tvtimer api")));
    tv.reset();
    EXPECT_EQ(engine.CheckDataValidity("/tmp/area/package"), 5);
    EXPECT_EQ(tv.transcript()[0], "E/35 CheckDataValidity: ");
    EXPECT_EQ(tv.transcript()[1], "tvtimer_init()");
    EXPECT_THAT(tv.messages(), testing::Not(testing::Contains("failed to init tvtimer api")));
}

TEST_F(ProductInfoTest, publicOperationsGoOnWithoutTimers) {
    tv.answer("tvtimer_init", -1);
    EXPECT_EQ(engine.WriteDataToFile("/tmp/area/info.txt"), 1);
    EXPECT_EQ(tv.transcript()[2], "E/35 WriteDataToFile: failed to init tvtimer api");
    EXPECT_EQ(engine.CheckDataValidity("/tmp/area/package"), 5);
    EXPECT_THAT(tv.describedLog(), testing::Contains("E/35 CheckDataValidity: failed to init tvtimer api"));
}

class FileContentTest : public ProductInfoTest {
 protected:
    std::string contentOf(const std::string& text) {
        writeFile(work("content"), text);
        std::ifstream stream("/tmp/area/content");
        return engine.GetFileContent(stream);
    }
};

TEST_F(FileContentTest, contentLacksItsLastByte) {
    EXPECT_EQ(contentOf("hello\n"), "hello");
    EXPECT_THAT(tv.describedLog(), ElementsAre("E/35 GetFileContent:  ProductCloneInfo file size is 6"));
}

TEST_F(FileContentTest, contentOfOneByteIsEmpty) {
    EXPECT_EQ(contentOf("x"), "");
}

TEST_F(FileContentTest, contentOfAnEmptyFileIsEmpty) {
    EXPECT_EQ(contentOf(""), "");
}

TEST_F(FileContentTest, contentEndsAtTheFirstNul) {
    EXPECT_EQ(contentOf(std::string("ab\0cd", 5)), "ab");
}

TEST_F(FileContentTest, contentFromTheMiddleHasTheRestsSizeButStartsAtTheBeginning) {
    writeFile(work("content"), "0123456789");
    std::ifstream stream("/tmp/area/content");
    stream.seekg(6);
    EXPECT_EQ(engine.GetFileContent(stream), "012");
    EXPECT_EQ(tv.messages().back(), " ProductCloneInfo file size is 4");
}

TEST_F(FileContentTest, contentOfAClosedStreamIsEmpty) {
    std::ifstream stream;
    stream.setstate(std::ios::failbit);
    EXPECT_EQ(engine.GetFileContent(stream), "");
}

TEST_F(FileContentTest, contentThatFitsNoMemoryIsEmpty) {
    writeFile(work("content"), "");
    fs::resize_file(work("content"), std::uintmax_t{1} << 50U);
    std::ifstream stream("/tmp/area/content");
    EXPECT_EQ(engine.GetFileContent(stream), "");
    EXPECT_EQ(tv.describedLog().back(), "E/35 GetFileContent: Failed to create buffer array");
}

}  // namespace
}  // namespace vxtest
