#include "cli/CommandLine.h"
#include "cli/CommandRunner.h"
#include "support/FakePlatform.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <string>

using namespace tilmora;
using Action = CommandLine::Action;

namespace {

QStringList words(const char* line) {
    return QString::fromUtf8(line).split(u' ', Qt::SkipEmptyParts);
}

struct ParseCase {
    const char* line;
    Action action;
    const char* command;
    const char* window;
    bool json;
};

class CommandLineParseTest : public ::testing::TestWithParam<ParseCase> {};

TEST_P(CommandLineParseTest, SplitsGlobalOptionsFromTheCommand) {
    const CommandLine parsed = CommandLine::parse(words(GetParam().line));
    EXPECT_EQ(parsed.action, GetParam().action) << GetParam().line;
    EXPECT_EQ(parsed.command, QString::fromUtf8(GetParam().command));
    EXPECT_EQ(parsed.windowID, GetParam().window
                                   ? std::optional(QString::fromUtf8(GetParam().window))
                                   : std::nullopt);
    EXPECT_EQ(parsed.json, GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, CommandLineParseTest,
    ::testing::Values(ParseCase{"", Action::noCommand, "", nullptr, false},
                      ParseCase{"--help", Action::showHelp, "", nullptr, false},
                      ParseCase{"--json --version", Action::showVersion, "", nullptr, true},
                      ParseCase{"windows", Action::runCommand, "windows", nullptr, false},
                      ParseCase{"--json --window a-1-0-x displays", Action::runCommand, "displays",
                                "a-1-0-x", true},
                      // Options after the command belong to the command.
                      ParseCase{"profile 1 --rows 2", Action::runCommand, "profile", nullptr,
                                false},
                      ParseCase{"--window", Action::usageError, "", nullptr, false},
                      ParseCase{"--json", Action::usageError, "", nullptr, true},
                      ParseCase{"--verbose windows", Action::usageError, "", nullptr, false}));

class CommandRunnerTest : public ::testing::Test {
protected:
    CommandRunnerTest() {
        fake.windowSystem.setScreens({builtInScreen, studioScreen});
        fake.windowSystem.setPointerLocation({2000, 500});
        fake.windowSystem.addApplication(10, QStringLiteral("org.example.Mail"),
                                         QStringLiteral("Mail"));
        mail = fake.windowSystem.addWindow(10, {100, 100, 600, 400}, QStringLiteral("Inbox"));
        fake.windowSystem.setFrontmostApplication(10);
    }

    // Runs one command line in a new store over the same preferences, as each process does.
    int run(const char* line) {
        output.clear();
        errors.clear();
        AppStore store(fake.platform());
        QTextStream out(&output);
        QTextStream err(&errors);
        return CommandRunner(store, out, err).run(CommandLine::parse(words(line)));
    }

    FakePlatform fake;
    WindowElement mail;
    QString output;
    QString errors;
};

struct RunCase {
    std::string name;
    const char* line;
    int exitCode;
    const char* output;
};

class CommandRunnerCaseTest : public CommandRunnerTest,
                              public ::testing::WithParamInterface<RunCase> {};

TEST_P(CommandRunnerCaseTest, PrintsTheStatusLineAndExitsWithItsOutcome) {
    EXPECT_EQ(run(GetParam().line), GetParam().exitCode) << errors.toStdString();
    EXPECT_EQ(output, QString::fromUtf8(GetParam().output));
    // A command's outcome is its status line on stdout; only problems with the command line
    // itself go to stderr.
    EXPECT_EQ(errors.isEmpty(), !output.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Commands, CommandRunnerCaseTest,
    ::testing::Values(
        RunCase{"Apply", "apply leftHalf", 0, "Left Half applied to Mail.\n"},
        RunCase{"Grid", "grid 1 0", 0, "Grid cell applied to Mail.\n"},
        RunCase{"GridArea", "grid 0 0 2 1", 0, "Grid area applied to Mail.\n"},
        RunCase{"NextDisplay", "next-display", 0, "Moved Mail to next display.\n"},
        RunCase{"SelectDisplay", "select-display 2", 0, "Screen 2 selected for Custom Grid.\n"},
        RunCase{"Profile", "profile 2 --columns 12 --gap 6.5", 0, "2\tStudio\t8 x 1\tgap 6.5\n"},
        RunCase{"MissingWindow", "--window nope apply maximize", 1,
                "The selected window is no longer available.\n"},
        RunCase{"Windows", "windows", 0,
                "org.example.Mail-10-0-Inbox\tMail\tInbox\t100, 100  600 x 400\tActive\n"},
        RunCase{"Displays", "displays", 0,
                "1\t1\tBuilt-in\t0, 0  1440 x 900\t0, 25  1440 x 875\tmain\n"
                "2\t2\tStudio\t1440, 0  1920 x 1080\t1440, 25  1920 x 1055\tpointer selected\n"},
        RunCase{"UnknownLayout", "apply LeftHalf", 2, ""},
        RunCase{"GridWithWords", "grid one two", 2, ""},
        RunCase{"GridWithThreeNumbers", "grid 1 2 3", 2, ""},
        RunCase{"NoSuchDisplay", "select-display 3", 1, ""},
        RunCase{"JsonOfACommand", "--json apply maximize", 2, ""},
        RunCase{"UnknownCommand", "arrange", 2, ""},
        RunCase{"ListingWithArguments", "windows all", 2, ""},
        RunCase{"RestoreUnknownName", "restore Nothing", 1, ""},
        RunCase{"BadProfileOption", "profile 1 --colour 3", 2, ""}),
    [](const auto& testCase) { return testCase.param.name; });

TEST_F(CommandRunnerTest, UnknownLayoutListsTheFifteenNames) {
    EXPECT_EQ(run("apply sideways"), CommandRunner::usageError);
    EXPECT_TRUE(errors.contains(QStringLiteral("leftHalf, rightHalf, topHalf, bottomHalf, "
                                               "maximize, center, topLeft")));
    EXPECT_TRUE(errors.contains(QStringLiteral("usage: tilmora")));
}

TEST_F(CommandRunnerTest, SavedLayoutsAreFoundByNameNewestFirst) {
    EXPECT_EQ(run("save Work"), 0);
    EXPECT_EQ(output, QStringLiteral("Saved Work.\n"));
    fake.windowSystem.window(mail).frame = {200, 200, 700, 500};
    EXPECT_EQ(run("save Work"), 0);
    fake.windowSystem.window(mail).frame = {0, 0, 300, 300};

    EXPECT_EQ(run("layouts"), 0);
    EXPECT_EQ(output.count(u'\n'), 2);
    EXPECT_TRUE(output.startsWith(QStringLiteral("Work\t1 windows\t")));

    EXPECT_EQ(run("restore Work"), 0);
    EXPECT_EQ(output, QStringLiteral("Restored 1 windows.\n"));
    EXPECT_EQ(fake.windowSystem.window(mail).frame, CGRect(200, 200, 700, 500));

    EXPECT_EQ(run("delete Work"), 0);
    EXPECT_EQ(output, QStringLiteral("Deleted Work.\n"));
    EXPECT_EQ(run("restore Work"), 0);
    EXPECT_EQ(fake.windowSystem.window(mail).frame, CGRect(100, 100, 600, 400));
}

TEST_F(CommandRunnerTest, FailuresOfTheStoreExitWithOne) {
    fake.windowSystem.setScreens({builtInScreen});
    EXPECT_EQ(run("next-display"), CommandRunner::failure);
    EXPECT_EQ(output, QStringLiteral("Only one display is connected.\n"));
    fake.windowSystem.window(mail).isSizeSettable = false;
    EXPECT_EQ(run("apply center"), CommandRunner::failure);
    fake.windowSystem.close(mail);
    EXPECT_EQ(run("save"), CommandRunner::failure);
    EXPECT_EQ(output, QStringLiteral("No windows are available to save.\n"));
}

TEST_F(CommandRunnerTest, JsonListingsParse) {
    for (const char* line : {"--json displays", "--json windows", "--json layouts"}) {
        EXPECT_EQ(run(line), 0);
        QJsonParseError error{};
        const QJsonDocument document = QJsonDocument::fromJson(output.toUtf8(), &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << line;
        EXPECT_TRUE(document.isArray()) << line;
    }
    run("--json windows");
    const QJsonObject window = QJsonDocument::fromJson(output.toUtf8()).array().first().toObject();
    EXPECT_EQ(window.value(QStringLiteral("id")).toString(),
              QStringLiteral("org.example.Mail-10-0-Inbox"));
    EXPECT_EQ(window.value(QStringLiteral("frame")).toObject().value(QStringLiteral("width")), 600);
}

} // namespace
