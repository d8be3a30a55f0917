#include "geometry/JsonCoding.h"

#include <gtest/gtest.h>

#include <optional>

using namespace tilmora;

namespace {

// The value stored under "v" in a one-key document.
QJsonValue valueOf(const char* json) {
    const auto object = json::parseObject(QByteArray("{\"v\":") + json + "}");
    return object ? object->value(QStringLiteral("v")) : QJsonValue(QJsonValue::Undefined);
}

struct NumberCase {
    const char* json;
    std::optional<std::uint32_t> asUInt32;
    std::optional<std::int64_t> asInt64;
};

class StrictNumberTest : public ::testing::TestWithParam<NumberCase> {};

TEST_P(StrictNumberTest, AcceptsOnlyWholeNumbersInRange) {
    const auto& c = GetParam();
    EXPECT_EQ(json::toUInt32(valueOf(c.json)), c.asUInt32) << c.json;
    EXPECT_EQ(json::toInt64(valueOf(c.json)), c.asInt64) << c.json;
}

INSTANTIATE_TEST_SUITE_P(Values, StrictNumberTest,
                         ::testing::Values(NumberCase{"49", 49u, 49}, NumberCase{"0", 0u, 0},
                                           NumberCase{"4294967295", 4294967295u, 4294967295LL},
                                           NumberCase{"4294967296", std::nullopt, 4294967296LL},
                                           NumberCase{"-1", std::nullopt, -1},
                                           NumberCase{"1.5", std::nullopt, std::nullopt},
                                           NumberCase{"40.0", 40u, 40},
                                           NumberCase{"1e30", std::nullopt, std::nullopt},
                                           NumberCase{"\"49\"", std::nullopt, std::nullopt},
                                           NumberCase{"true", std::nullopt, std::nullopt},
                                           NumberCase{"null", std::nullopt, std::nullopt}));

TEST(JsonCodingTest, MissingKeyIsNoValueOfAnyType) {
    const QJsonObject empty;
    EXPECT_FALSE(json::toUInt32(empty.value(QStringLiteral("k"))));
    EXPECT_FALSE(json::toDouble(empty.value(QStringLiteral("k"))));
    EXPECT_FALSE(json::toString(empty.value(QStringLiteral("k"))));
}

TEST(JsonCodingTest, DoublesAndStringsAreNotInterchangeable) {
    EXPECT_EQ(json::toDouble(valueOf("12.5")), 12.5);
    EXPECT_FALSE(json::toDouble(valueOf("\"12.5\"")));
    EXPECT_FALSE(json::toDouble(valueOf("false")));
    EXPECT_EQ(json::toString(valueOf("\"Built-in\"")), QStringLiteral("Built-in"));
    EXPECT_FALSE(json::toString(valueOf("3")));
}

TEST(JsonCodingTest, WritesKeysInTheGivenOrderCompactly) {
    const QByteArray written =
        json::writeObject({{QStringLiteral("keyCode"), 49},
                           {QStringLiteral("modifiers"), 6144},
                           {QStringLiteral("keyLabel"), QStringLiteral("Sp\"ace ⌃")}});
    EXPECT_EQ(written,
              QByteArray("{\"keyCode\":49,\"modifiers\":6144,\"keyLabel\":\"Sp\\\"ace ⌃\"}"));
    EXPECT_EQ(json::writeArray({"{}", "[1]"}), QByteArray("[{},[1]]"));
    EXPECT_EQ(json::writeArray({}), QByteArray("[]"));
}

TEST(JsonCodingTest, NestedRecordsKeepTheirOwnKeyOrder) {
    const QByteArray frame =
        json::writeObject({{QStringLiteral("x"), 100.0}, {QStringLiteral("width"), 0.25}});
    const QByteArray written = json::writeEncodedObject(
        {{QStringLiteral("title"), json::writeValue(QStringLiteral("a\"b"))},
         {QStringLiteral("frame"), frame},
         {QStringLiteral("list"), json::writeArray({frame})}});
    EXPECT_EQ(written, QByteArray("{\"title\":\"a\\\"b\",\"frame\":{\"x\":100,\"width\":0.25},"
                                  "\"list\":[{\"x\":100,\"width\":0.25}]}"));
}

TEST(JsonCodingTest, RejectsDocumentsOfTheWrongShape) {
    EXPECT_FALSE(json::parseObject("[1,2]"));
    EXPECT_FALSE(json::parseObject("{\"a\":"));
    EXPECT_FALSE(json::parseArray("{}"));
    EXPECT_FALSE(json::parseArray(""));
    EXPECT_TRUE(json::parseArray("[]"));
}

} // namespace
