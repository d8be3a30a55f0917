#include "cli/CommandLine.h"
#include "cli/CommandRunner.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace tilmora;
using Action = CommandLine::Action;

namespace {

QStringList words(const char* line) {
    return QString::fromUtf8(line).split(u' ', Qt::SkipEmptyParts);
}

TEST(CommandLineTest, SplitsGlobalOptionsFromTheCommand) {
    const std::optional<QString> none;
    // clang-format off
    const std::tuple<const char*, Action, const char*, std::optional<QString>, bool> cases[] = {
        {"", Action::noCommand, "", none, false},
        {"--help", Action::showHelp, "", none, false},
        {"--json --version", Action::showVersion, "", none, true},
        {"windows", Action::runCommand, "windows", none, false},
        {"--json --window a-1-0-x displays", Action::runCommand, "displays", QStringLiteral("a-1-0-x"), true},
        // Options after the command belong to the command.
        {"profile 1 --rows 2", Action::runCommand, "profile", none, false},
        {"--window", Action::usageError, "", none, false},
        {"--json", Action::usageError, "", none, true},
        {"--verbose windows", Action::usageError, "", none, false}};
    // clang-format on
    for (const auto& [line, action, command, window, json] : cases) {
        const CommandLine parsed = CommandLine::parse(words(line));
        EXPECT_EQ(parsed.action, action) << line;
        EXPECT_EQ(parsed.command, QString::fromUtf8(command)) << line;
        EXPECT_EQ(parsed.windowID, window) << line;
        EXPECT_EQ(parsed.json, json) << line;
    }
}

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

TEST_F(CommandRunnerTest, PrintsTheStatusLineAndExitsWithItsOutcome) {
    // clang-format off
    const std::tuple<const char*, int, const char*> cases[] = {
        {"select-display 2", 0, "Screen 2 selected for Custom Grid.\n"},
        {"profile 2 --columns 12 --gap 6.5", 0, "2\tStudio\t8 x 1\tgap 6.5\n"},
        {"--window nope apply maximize", 1, "The selected window is no longer available.\n"},
        {"windows", 0, "0x00000001\torg.example.Mail-10-0-Inbox\tMail\tInbox\t100, 100  600 x 400\tActive\n"},
        {"displays", 0, "1\t1\tBuilt-in\t0, 0  1440 x 900\t0, 25  1440 x 875\tmain\n"
                                       "2\t2\tStudio\t1440, 0  1920 x 1080\t1440, 25  1920 x 1055\tpointer selected\n"},
        {"grid one two", 2, ""},
        {"select-display 3", 1, ""},
        {"--json apply maximize", 2, ""},
        {"restore Nothing", 1, ""},
        // Only a running instance has a menu to pop up.
        {"menu", 1, ""},
        {"profile 1 --colour 3", 2, ""},
        {"profile 1 --gap nan", 2, ""},
        {"profile 1 --gap -inf", 2, ""},
        {"profile 1 --gap 1e9", 0, "1\tBuilt-in\t2 x 1\tgap 32\n"}};
    // clang-format on
    for (const auto& [line, exitCode, printed] : cases) {
        fake.windowSystem.window(mail).frame = {100, 100, 600, 400};
        EXPECT_EQ(run(line), exitCode) << line << ": " << errors.toStdString();
        EXPECT_EQ(output, QString::fromUtf8(printed)) << line;
        // A command's outcome is its status line on stdout; only problems with the command line
        // itself go to stderr.
        EXPECT_EQ(errors.isEmpty(), !output.isEmpty()) << line;
    }
}

// Titles come from other programs: one window stays one line of plain fields on a terminal, and
// the X window id keeps naming the window after its title (and with it the store's id) changed.
TEST_F(CommandRunnerTest, WindowsAreListedSafelyAndFoundByTheirXWindowID) {
    fake.windowSystem.window(mail).title = QStringLiteral("a\tb\nc\\d\x1b[31m\u202eT\u0085");
    EXPECT_EQ(run("windows"), CommandRunner::success);
    EXPECT_EQ(output, QStringLiteral("0x00000001\torg.example.Mail-10-0-a\\tb\\nc\\\\d\\x1b[31m"
                                     "\\u202eT\\u0085\tMail\ta\\tb\\nc\\\\d\\x1b[31m\\u202eT"
                                     "\\u0085\t100, 100  600 x 400\tActive\n"));
    fake.windowSystem.setFrontmostApplication(std::nullopt);
    for (const char* line : {"--window 0x1 apply leftHalf", "--window 1 apply leftHalf"}) {
        fake.windowSystem.window(mail).frame = {100, 100, 600, 400};
        EXPECT_EQ(run(line), CommandRunner::success) << line;
        EXPECT_EQ(fake.windowSystem.window(mail).frame.origin, (CGPoint{0, 25})) << line;
    }
    EXPECT_EQ(run("--window 0x2 apply leftHalf"), CommandRunner::failure);
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

} // namespace
