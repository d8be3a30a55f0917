// Monitor names and display numbers from EDID blocks and connector names.
#include "platform/x11/X11Edid.h"
#include "platform/x11/X11Monitors.h"

#include <gtest/gtest.h>

namespace tilmora {
namespace {

// A 128-byte base block with the given identity and, optionally, a product name descriptor.
QByteArray edidBlock(std::uint16_t product, std::uint32_t serial, const char* productName) {
    QByteArray block(128, '\0');
    const char header[] = {0, '\xFF', '\xFF', '\xFF', '\xFF', '\xFF', '\xFF', 0};
    std::copy(std::begin(header), std::end(header), block.begin());
    block[8] = 0x10; // vendor "DEL"
    block[9] = '\xAC';
    block[10] = static_cast<char>(product & 0xFF);
    block[11] = static_cast<char>(product >> 8);
    for (int i = 0; i < 4; ++i) {
        block[12 + i] = static_cast<char>((serial >> (8 * i)) & 0xFF);
    }
    // The first descriptor is a timing; the name sits in the second.
    block[54] = 0x01;
    if (productName) {
        block[75] = '\xFC';
        QByteArray name = QByteArray(productName) + '\n';
        name = name.leftJustified(13, ' ');
        std::copy(name.begin(), name.end(), block.begin() + 77);
    }
    return block;
}

TEST(X11Edid, ReadsIdentityAndProductName) {
    const auto edid = X11Edid::parse(edidBlock(0xA0B1, 0x12345678, "DELL U2720Q"));
    ASSERT_TRUE(edid);
    EXPECT_EQ(edid->vendor, 0x10AC);
    EXPECT_EQ(edid->product, 0xA0B1);
    EXPECT_EQ(edid->serial, 0x12345678U);
    EXPECT_EQ(edid->productName, QStringLiteral("DELL U2720Q"));
    EXPECT_EQ(edid->identity.size(), 8);
}

TEST(X11Edid, RejectsWhatIsNoBaseBlock) {
    EXPECT_FALSE(X11Edid::parse(QByteArray()));
    EXPECT_FALSE(X11Edid::parse(edidBlock(1, 1, nullptr).left(127)));
    QByteArray broken = edidBlock(1, 1, nullptr);
    broken[1] = 0;
    EXPECT_FALSE(X11Edid::parse(broken));
}

TEST(X11Edid, PlaceholderSerialsIdentifyByTheWholeBlock) {
    for (const std::uint32_t serial : {0U, 0x01010101U}) {
        const auto edid = X11Edid::parse(edidBlock(7, serial, "A"));
        ASSERT_TRUE(edid);
        EXPECT_EQ(edid->identity.size(), 128) << serial;
    }
}

TEST(X11Edid, FnvMatchesTheReferenceValues) {
    EXPECT_EQ(fnv1a(""), 0x811C9DC5U);
    EXPECT_EQ(fnv1a("a"), 0xE40C292CU);
    EXPECT_EQ(fnv1a("foobar"), 0xBF9CF968U);
}

struct NamingCase {
    const char* name;
    std::vector<X11MonitorSource> sources;
    std::vector<QString> names;
    std::vector<std::optional<std::uint32_t>> numbers;
};

class MonitorNaming : public testing::TestWithParam<NamingCase> {};

TEST_P(MonitorNaming, NamesAndNumbersFollowTheMonitor) {
    const auto monitors = describeMonitors(GetParam().sources);
    std::vector<QString> names;
    std::vector<std::optional<std::uint32_t>> numbers;
    for (const X11Monitor& monitor : monitors) {
        names.push_back(monitor.name);
        numbers.push_back(monitor.displayNumber);
    }
    EXPECT_EQ(names, GetParam().names);
    EXPECT_EQ(numbers, GetParam().numbers);
}

const QByteArray dell = edidBlock(0xA0B1, 42, "DELL U2720Q");
const QByteArray dellIdentity = dell.mid(8, 8);

INSTANTIATE_TEST_SUITE_P(
    X11, MonitorNaming,
    testing::Values(
        // The product name reads better than the connector; the number ignores the port.
        NamingCase{"ProductNameAndPortIndependentNumber",
                   {{QStringLiteral("DP-1"), {0, 0, 100, 100}, true, dell}},
                   {QStringLiteral("DELL U2720Q")},
                   {fnv1a(dellIdentity)}},
        NamingCase{"ConnectorWithoutEdid",
                   {{QStringLiteral("HDMI-1"), {0, 0, 100, 100}, false, {}}},
                   {QStringLiteral("HDMI-1")},
                   {fnv1a("HDMI-1")}},
        NamingCase{"NothingToNameItBy",
                   {{QString(), {0, 0, 100, 100}, false, {}}},
                   {QStringLiteral("Monitor 1")},
                   {std::nullopt}},
        // Two identical monitors: the connector tells them apart, in name and number.
        NamingCase{"IdenticalTwins",
                   {{QStringLiteral("DP-1"), {0, 0, 100, 100}, false, dell},
                    {QStringLiteral("DP-2"), {100, 0, 100, 100}, true, dell}},
                   {QStringLiteral("DELL U2720Q (DP-2)"), QStringLiteral("DELL U2720Q (DP-1)")},
                   {fnv1a("DP-2", fnv1a(dellIdentity)), fnv1a("DP-1", fnv1a(dellIdentity))}}),
    [](const testing::TestParamInfo<NamingCase>& p) { return std::string(p.param.name); });

} // namespace
} // namespace tilmora
