// Random but legal input to every page of the wizard. The run in the test
// suite is short and always the same; scripts/monkey.sh runs it with any seed
// and length (KELMAR_MONKEY_SEED, KELMAR_MONKEY_EVENTS: events per page).
#include "Monkey.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace kelmar::monkey {
namespace {

long long fromEnvironment(const char* name, long long fallback) {
    const char* text = std::getenv(name);
    return text != nullptr && *text != '\0' ? std::atoll(text) : fallback;
}

TEST(Monkey, RandomInputOnEveryPageKeepsEveryFunctionSound) {
    const auto seed = static_cast<std::uint64_t>(fromEnvironment("KELMAR_MONKEY_SEED", 20261123));
    const int perPage = static_cast<int>(fromEnvironment("KELMAR_MONKEY_EVENTS", 150));
    Monkey monkey(seed, perPage);
    const QString failure = monkey.run();

    std::printf("seed %llu, %d events in %d sessions, %d message boxes answered\n",
                static_cast<unsigned long long>(seed), monkey.totalEvents(), monkey.sessions(),
                monkey.messageBoxes());
    for (const auto& [page, n] : monkey.eventsByPage())
        std::printf("  %-20s %d\n", qPrintable(page), n);
    EXPECT_TRUE(failure.isEmpty()) << "seed " << seed << ", " << failure.toStdString();
    EXPECT_EQ(brokenRule(), QString());
}

}  // namespace
}  // namespace kelmar::monkey
