#include "platform/UUID.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <thread>

namespace {

TEST(UUID, IsVersionFourInUpperCase)
{
    std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    EXPECT_TRUE(std::regex_match(newUUIDString(), form));
}

TEST(UUID, DiffersAcrossCallsAndThreads)
{
    std::set<std::string> seen;
    for (int i = 0; i < 1000; ++i) seen.insert(newUUIDString());
    std::string other;
    std::thread([&] { other = newUUIDString(); }).join();
    seen.insert(other);
    EXPECT_EQ(seen.size(), 1001u);
}

} // namespace
