#include "support/FakeHotKeyService.h"

#include <gtest/gtest.h>

#include <vector>

using namespace tilmora;

namespace {

constexpr std::uint32_t leftArrow = 123;
constexpr std::uint32_t rightArrow = 124;
constexpr std::uint32_t controlOptionCommand = 0x1000 | 0x0800 | 0x0100;

// The hot key logic relies on these refusals to exercise its roll-backs.
TEST(FakeHotKeyServiceTest, RefusesTakenCombinationsLikeTheRealService) {
    FakeHotKeyService service;
    service.refuse(rightArrow, controlOptionCommand);

    const auto first = service.registerHotKey(leftArrow, controlOptionCommand, 1);
    const auto duplicate = service.registerHotKey(leftArrow, controlOptionCommand, 1000);
    const auto scripted = service.registerHotKey(rightArrow, controlOptionCommand, 2);
    const auto otherModifiers = service.registerHotKey(leftArrow, 0x0100, 3);

    EXPECT_EQ(first.status, HotKeyStatus::success);
    ASSERT_TRUE(first.handle);
    EXPECT_EQ(duplicate, (HotKeyRegistrationResult{HotKeyStatus::alreadyTaken, std::nullopt}));
    EXPECT_EQ(scripted, (HotKeyRegistrationResult{HotKeyStatus::alreadyTaken, std::nullopt}));
    EXPECT_EQ(otherModifiers.status, HotKeyStatus::success);
    EXPECT_EQ(service.registrations().size(), 2u);

    // Unregistering frees the combination; a second unregistration is stale.
    service.unregisterHotKey(*first.handle);
    service.unregisterHotKey(*first.handle);
    EXPECT_EQ(service.staleUnregistrationCount(), 1);
    EXPECT_EQ(service.registerHotKey(leftArrow, controlOptionCommand, 1000).status,
              HotKeyStatus::success);
    EXPECT_EQ(service.attempts().size(), 5u);
}

TEST(FakeHotKeyServiceTest, DeliversPressesOfRegisteredKeysOnly) {
    FakeHotKeyService service;
    std::vector<std::uint32_t> pressed;
    service.setPressedHandler([&](std::uint32_t id) { pressed.push_back(id); });
    const auto handle = service.registerHotKey(leftArrow, controlOptionCommand, 7).handle;

    EXPECT_TRUE(service.press(7));
    EXPECT_TRUE(service.pressShortcut(leftArrow, controlOptionCommand));
    EXPECT_FALSE(service.press(8));
    service.unregisterHotKey(*handle);
    EXPECT_FALSE(service.press(7));

    EXPECT_EQ(pressed, (std::vector<std::uint32_t>{7, 7}));
}

} // namespace
