#include <gtest/gtest.h>

#include <string>

#include "VXCloneFileHash.h"

namespace vxtest {
namespace {

std::uint32_t hashOf(const std::string& text, std::uint32_t from = 0) {
    return VXCloneFileHash(from, reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

/// The definition, byte by byte.
std::uint32_t hashByDefinition(const std::string& text, std::uint32_t hash = 0) {
    for (const char byte : text) {
        hash = hash * 3 + static_cast<std::uint32_t>(static_cast<int>(static_cast<signed char>(byte)));
    }
    return hash;
}

std::string everyByte(std::size_t count) {
    std::string text(count, '\0');
    for (std::size_t at = 0; at < count; ++at) {
        text[at] = static_cast<char>((at * 167 + at / 256) & 0xFFU);
    }
    return text;
}

TEST(FileHash, shortTextsHaveTheirKnownValues) {
    EXPECT_EQ(hashOf(""), 0U);
    EXPECT_EQ(hashOf("A"), 65U);
    EXPECT_EQ(hashOf("AB"), 261U);
    EXPECT_EQ(hashOf("\xff"), 4294967295U);
    EXPECT_EQ(hashOf(std::string(4, '\0')), 0U);
}

TEST(FileHash, everyLengthAroundTheRowIsAsDefined) {
    for (std::size_t length = 0; length <= 600; ++length) {
        const std::string text = everyByte(length);
        ASSERT_EQ(hashOf(text), hashByDefinition(text)) << length;
    }
}

TEST(FileHash, extremeBytesFillARowWithoutCarries) {
    for (const char byte : {'\x7f', '\x80', '\xff', '\0', '\x01'}) {
        const std::string text(1024, byte);
        EXPECT_EQ(hashOf(text), hashByDefinition(text));
    }
}

TEST(FileHash, continuedOverAnyCutIsTheSame) {
    const std::string text = everyByte(1000);
    for (const std::size_t cut : {0U, 1U, 127U, 128U, 129U, 256U, 999U, 1000U}) {
        EXPECT_EQ(hashOf(text.substr(cut), hashOf(text.substr(0, cut))), hashByDefinition(text)) << cut;
    }
}

}  // namespace
}  // namespace vxtest
