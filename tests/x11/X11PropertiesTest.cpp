// Property contents come from other processes: decoding takes any bytes without harm.
#include "platform/x11/X11Properties.h"
#include "platform/x11/X11PointSpace.h"

#include <gtest/gtest.h>

#include <cstring>

namespace tilmora {
namespace {

constexpr xcb_atom_t utf8 = 300;

X11PropertyValue text(xcb_atom_t type, const QByteArray& bytes) {
    return {type, 8, bytes};
}

X11PropertyValue cardinalValue(std::vector<std::uint32_t> items) {
    QByteArray bytes(static_cast<qsizetype>(items.size() * 4), '\0');
    std::memcpy(bytes.data(), items.data(), items.size() * 4);
    return {XCB_ATOM_CARDINAL, 32, bytes};
}

struct TextCase {
    const char* name;
    std::optional<X11PropertyValue> value;
    std::optional<QString> expected;
};

class TitleDecoding : public testing::TestWithParam<TextCase> {};

TEST_P(TitleDecoding, YieldsTheTitleOrNothing) {
    EXPECT_EQ(x11::text(GetParam().value, utf8), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    X11, TitleDecoding,
    testing::Values(TextCase{"Utf8", text(utf8, "Caf\xC3\xA9"), QStringLiteral("Caf\u00E9")},
                    TextCase{"Latin1String", text(XCB_ATOM_STRING, "Caf\xE9"),
                             QStringLiteral("Caf\u00E9")},
                    TextCase{"InvalidUtf8BecomesReplacement",
                             text(utf8, "a\xFF"
                                        "b"),
                             QStringLiteral("a\uFFFDb")},
                    TextCase{"CutAtNul", text(utf8, QByteArray("ab\0cd", 5)), QStringLiteral("ab")},
                    TextCase{"Missing", std::nullopt, std::nullopt},
                    TextCase{"NotText", cardinalValue({1, 2}), std::nullopt}),
    [](const testing::TestParamInfo<TextCase>& p) { return std::string(p.param.name); });

TEST(X11Properties, TitleCutAtTheReadLimitDropsThePartialCharacter) {
    // 4095 bytes of ASCII and the first byte of a two-byte character, as a cut read leaves it.
    QByteArray bytes(static_cast<qsizetype>(maximumTitleBytes) - 1, 'x');
    bytes += '\xC3';
    const auto title = x11::text(text(utf8, bytes), utf8);
    ASSERT_TRUE(title);
    EXPECT_EQ(title->size(), static_cast<qsizetype>(maximumTitleBytes) - 1);
    EXPECT_FALSE(title->contains(QChar(0xFFFD)));
}

TEST(X11Properties, ShortListsAreAbsentNotZero) {
    EXPECT_FALSE(x11::extents(cardinalValue({1, 2, 3})));
    EXPECT_EQ(x11::extents(cardinalValue({1, 2, 3, 4})), (X11Extents{1, 2, 3, 4}));
    EXPECT_FALSE(x11::strutPartial(cardinalValue(std::vector<std::uint32_t>(11, 1))));
    // Odd byte counts of a 32-bit property are cut to whole items.
    EXPECT_EQ(x11::cardinals(X11PropertyValue{XCB_ATOM_CARDINAL, 32, QByteArray(7, '\1')}).size(),
              1U);
}

TEST(X11Properties, PlainStrutCoversTheWholeEdge) {
    const auto strut = x11::strut(cardinalValue({0, 0, 30, 0}), 3360, 1080);
    ASSERT_TRUE(strut);
    EXPECT_EQ(strut->top, 30);
    EXPECT_EQ(strut->topStartX, 0);
    EXPECT_EQ(strut->topEndX, 3359);
}

TEST(X11Properties, SizeHintsReadOnlyTheFlaggedParts) {
    std::vector<std::uint32_t> hints(18, 0);
    hints[5] = 300; // minimum given but not flagged
    hints[6] = 200;
    EXPECT_EQ(x11::sizeHints(cardinalValue(hints)), X11SizeHints{});

    hints[0] = (1U << 4) | (1U << 5) | (1U << 9);
    hints[7] = 300;
    hints[8] = 200;
    hints[17] = XCB_GRAVITY_STATIC;
    const X11SizeHints fixed = x11::sizeHints(cardinalValue(hints));
    EXPECT_TRUE(fixed.isFixedSize());
    EXPECT_EQ(fixed.windowGravity, XCB_GRAVITY_STATIC);

    hints[7] = 0; // a zero maximum limits nothing
    EXPECT_FALSE(x11::sizeHints(cardinalValue(hints)).isFixedSize());
}

TEST(X11Properties, XftDpiFromTheResourceDatabase) {
    EXPECT_EQ(x11::xftDpi("Xft.antialias:\t1\nXft.dpi:\t144\n"), 144.0);
    EXPECT_EQ(x11::xftDpi("Xcursor.size: 24\n"), std::nullopt);
    EXPECT_EQ(x11::xftDpi("Xft.dpi: lots\n"), std::nullopt);
}

// The scale Qt's xcb platform derives from it: rounded to a whole dpi, over 96, at least 1.
TEST(X11Properties, ScaleFromXftDpiAsQtReadsIt) {
    const std::pair<std::optional<double>, double> rows[] = {
        {std::nullopt, 1.0}, {96, 1.0}, {192, 2.0},      {144, 1.5},
        {120, 1.25},         {72, 1.0}, {150.4, 1.5625}, {150.6, 151.0 / 96}};
    for (const auto& [dpi, scale] : rows) {
        EXPECT_EQ(X11PointSpace::scaleForDpi(dpi), scale) << dpi.value_or(0);
    }
}

} // namespace
} // namespace tilmora
