#include "windows/CaselessText.h"

#include <gtest/gtest.h>

#include <string>

using namespace tilmora;

namespace {

struct ContainsCase {
    std::string name;
    const char* text;
    const char* part;
    bool found;
};

class CaselessTextTest : public ::testing::TestWithParam<ContainsCase> {};

TEST_P(CaselessTextTest, Contains) {
    const ContainsCase& c = GetParam();
    EXPECT_EQ(containsIgnoringCase(QString::fromUtf8(c.text), QString::fromUtf8(c.part)), c.found);
}

// "e\xCC\x81" is "e" followed by the combining acute accent, "é" the precomposed letter.
// clang-format off
INSTANTIATE_TEST_SUITE_P(Matching, CaselessTextTest, ::testing::Values(
    ContainsCase{"AsciiCase", "Report.txt - Editor", "REPORT.TXT", true},
    ContainsCase{"SharpSFindsDoubleS", "Straße", "STRASSE", true},
    ContainsCase{"DoubleSFindsSharpS", "STRASSENKARTE", "straße", true},
    ContainsCase{"CapitalSharpS", "GROẞE PLÄNE", "große", true},
    ContainsCase{"Ligature", "Oﬃce Notes", "OFFICE", true},
    ContainsCase{"GreekFinalSigma", "ΛΟΓΟΣ 2", "λογος", true},
    ContainsCase{"PrecomposedFindsCombining", "Café Menu", "CAFE\xCC\x81", true},
    ContainsCase{"CombiningFindsPrecomposed", "Cafe\xCC\x81 Menu", "café", true},
    // An accent is part of its letter: neither finding a bare letter nor dropping it.
    ContainsCase{"AccentIsNotIgnored", "Café", "Cafe", false},
    ContainsCase{"AccentIsNotAdded", "Cafe", "Café", false},
    ContainsCase{"LaterWholeOccurrence", "Cafe\xCC\x81 or Cafe", "CAFE", true},
    ContainsCase{"HangulSyllableIsNotSplit", "각", "가", false},
    // Locale-neutral: the dotless i is a letter of its own, the dotted capital I folds to i̇.
    ContainsCase{"DotlessIIsItsOwnLetter", "ılık", "ILIK", false},
    ContainsCase{"DottedCapitalI", "İstanbul", "i\xCC\x87stanbul", true},
    ContainsCase{"EmptyPartIsEverywhere", "Report", "", true},
    ContainsCase{"NothingInEmpty", "", "a", false},
    ContainsCase{"LongerPart", "Mail", "Mailbox", false}),
    [](const auto& p) { return p.param.name; });
// clang-format on

} // namespace
