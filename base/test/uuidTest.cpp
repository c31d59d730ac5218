#include "uuid.h"

#include "baseTestHelpers.h"

#include <gtest/gtest.h>
#include <set>
#include <unordered_set>

using namespace Qv;
using namespace Qv::TestHelpers;

namespace {

TEST(UuidTest, TextRoundTripsAndBadTextIsQuoted) {
    Uuid const parsed = Uuid::fromString("00112233-4455-6677-8899-AABBCCDDEEFF");
    EXPECT_EQ(parsed.toString(), "00112233-4455-6677-8899-aabbccddeeff");
    EXPECT_EQ(Uuid::fromString(parsed.toString()), parsed);
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_EQ(parsed.getBytes()[i], 0x11 * i) << i; // byte order is text order
    EXPECT_EQ(Uuid::fromString(Uuid().toString()), Uuid());

    // No dashes, braces, a digit short or long, a dash moved, not hexadecimal.
    char const* const bad[] = {"123e4567e89b12d3a456426614174000",
                               "{123e4567-e89b-12d3-a456-426614174000}",
                               "123e4567-e89b-12d3-a456-42661417400",
                               "123e4567-e89b-12d3-a456-4266141740000",
                               "123e4567-e89b-12d3-a4567426614174000",
                               "g23e4567-e89b-12d3-a456-426614174000",
                               "0"};
    for (char const* text : bad)
        EXPECT_TRUE(
            throwsWith<UuidEx::ExBadText>([&] { Uuid::fromString(text); }, '"' + std::string(text) + '"'));
}

TEST(UuidTest, RandomIdentifiersAreVersionFourAndDistinct) {
    std::set<Uuid> ordered;
    for (int i = 0; i < 1000; ++i) {
        Uuid const uuid = Uuid::createRandom();
        std::string const text = uuid.toString();
        EXPECT_EQ(text[14], '4') << text;
        EXPECT_NE(std::string("89ab").find(text[19]), std::string::npos) << text;
        ordered.insert(uuid);
    }
    EXPECT_EQ(ordered.size(), 1000u);
    EXPECT_EQ(std::unordered_set<Uuid>(ordered.begin(), ordered.end()).size(), 1000u);
    EXPECT_TRUE(UuidUtil::isNil(Uuid()));
}

} // namespace
