// Property contents come from other processes: decoding takes any bytes without harm.
#include "platform/x11/X11Properties.h"
#include "platform/x11/X11PointSpace.h"

#include <gtest/gtest.h>

#include <array>
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

TEST(X11Properties, SizeHintsReadIncrementsAndBaseSize) {
    // xterm's: base 4 x 4, minimum 10 x 17, increments 6 x 13.
    std::vector<std::uint32_t> hints(18, 0);
    hints[0] = (1U << 4) | (1U << 6) | (1U << 8);
    hints[5] = 10;
    hints[6] = 17;
    hints[9] = 6;
    hints[10] = 13;
    hints[15] = 4;
    hints[16] = 4;
    const X11SizeHints read = x11::sizeHints(cardinalValue(hints));
    EXPECT_EQ(read.widthIncrement, 6);
    EXPECT_EQ(read.heightIncrement, 13);
    EXPECT_EQ(read.baseWidth, 4);
    EXPECT_EQ(read.baseHeight, 4);
}

// What a manager applying the hints may answer instead of the size asked for: the settle waits
// for exactly these answers, so an answer left out costs a whole pass and one let in ends the
// wait before the manager has answered.
TEST(X11Properties, SizeHintsAllowTheAnswersOfTheirLimits) {
    X11SizeHints xterm;
    xterm.minWidth = 10;
    xterm.minHeight = 17;
    xterm.baseWidth = 4;
    xterm.baseHeight = 4;
    xterm.widthIncrement = 6;
    xterm.heightIncrement = 13;
    X11SizeHints limited;
    limited.minWidth = 1000;
    limited.minHeight = 700;
    limited.maxWidth = 1600;
    limited.maxHeight = 1000;
    struct Case {
        const char* what;
        const X11SizeHints& hints;
        std::array<std::int64_t, 4> requestedAndAnswered;
        bool allowed;
    };
    const Case cases[] = {
        {"the size asked for", X11SizeHints{}, {958, 1050, 958, 1050}, true},
        {"another size without hints", X11SizeHints{}, {958, 1050, 400, 300}, false},
        {"whole cells below the request", xterm, {960, 1050, 958, 1044}, true},
        {"a cell too small", xterm, {960, 1050, 952, 1044}, false},
        {"larger than asked", xterm, {960, 1050, 964, 1057}, false},
        {"not a whole cell", xterm, {960, 1050, 955, 1044}, false},
        {"the minimum for a smaller request", limited, {800, 600, 1000, 700}, true},
        {"the maximum for a larger request", limited, {1900, 1050, 1600, 1000}, true},
        {"anything else within the limits", limited, {1200, 800, 1100, 800}, false},
    };
    for (const Case& c : cases) {
        const auto& [rw, rh, aw, ah] = c.requestedAndAnswered;
        EXPECT_EQ(c.hints.allowsAnswer(rw, rh, aw, ah), c.allowed) << c.what;
    }
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
