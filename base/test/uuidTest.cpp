#include "uuid.h"

#include <gtest/gtest.h>
#include <set>
#include <unordered_set>

using namespace Qv;

namespace {

TEST(UuidTest, TextRoundTrips) {
    struct Case {
        char const* text;
        char const* canonical;
    } const cases[] = {
        {"00000000-0000-0000-0000-000000000000", "00000000-0000-0000-0000-000000000000"},
        {"123e4567-e89b-12d3-a456-426614174000", "123e4567-e89b-12d3-a456-426614174000"},
        {"123E4567-E89B-12D3-A456-426614174000", "123e4567-e89b-12d3-a456-426614174000"},
        {"ffffffff-ffff-ffff-ffff-ffffffffffff", "ffffffff-ffff-ffff-ffff-ffffffffffff"},
    };
    for (auto const& c : cases) {
        Uuid const uuid = Uuid::fromString(c.text);
        EXPECT_EQ(uuid.toString(), c.canonical);
        EXPECT_EQ(Uuid::fromString(uuid.toString()), uuid);
    }
    Uuid const parsed = Uuid::fromString("00112233-4455-6677-8899-aabbccddeeff");
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_EQ(parsed.getBytes()[i], 0x11 * i) << i; // byte order is text order
}

TEST(UuidTest, BadTextIsRefusedWithTheTextQuoted) {
    char const* const cases[] = {
        "",
        "123e4567e89b12d3a456426614174000",       // no dashes
        "{123e4567-e89b-12d3-a456-426614174000}", // braces
        "123e4567-e89b-12d3-a456-42661417400",    // one digit short
        "123e4567-e89b-12d3-a456-4266141740000",  // one digit long
        "123e4567-e89b-12d3-a456_426614174000",   // wrong separator
        "123e4567-e89b-12d3-a4567426614174000",   // dash moved
        "g23e4567-e89b-12d3-a456-426614174000",   // not hexadecimal
        " 23e4567-e89b-12d3-a456-426614174000",
    };
    for (char const* text : cases) {
        try {
            Uuid::fromString(text);
            ADD_FAILURE() << "accepted \"" << text << '"';
        } catch (UuidEx::ExBadText const& ex) {
            EXPECT_NE(ex.getReason().find('"' + std::string(text) + '"'), std::string::npos)
                << ex.getReason();
        }
    }
}

TEST(UuidTest, RandomIdentifiersAreVersionFourAndDistinct) {
    std::set<Uuid> ordered;
    std::unordered_set<Uuid> hashed;
    for (int i = 0; i < 1000; ++i) {
        Uuid const uuid = Uuid::createRandom();
        std::string const text = uuid.toString();
        EXPECT_EQ(text[14], '4') << text;
        EXPECT_NE(std::string("89ab").find(text[19]), std::string::npos) << text;
        EXPECT_FALSE(UuidUtil::isNil(uuid));
        ordered.insert(uuid);
        hashed.insert(uuid);
    }
    EXPECT_EQ(ordered.size(), 1000u);
    EXPECT_EQ(hashed.size(), 1000u);
    EXPECT_TRUE(UuidUtil::isNil(Uuid()));
    EXPECT_EQ(UuidUtil::hashFunc(Uuid()), UuidUtil::hashFunc(Uuid::fromString(Uuid().toString())));
}

} // namespace
