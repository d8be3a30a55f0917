// Application ids and names from window hints and desktop entries.
#include "platform/x11/X11Identity.h"
#include "platform/x11/X11DesktopEntries.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tilmora {
namespace {

class X11Identity : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(user_.isValid() && system_.isValid());
        write(system_, "debian-xterm.desktop",
              "[Desktop Entry]\nType=Application\nName=XTerm\nName[de]=X-Terminal\n"
              "StartupWMClass=XTerm\n");
        write(system_, "org.example.Editor.desktop",
              "[Desktop Entry]\nType=Application\nName=Editor\n");
        write(system_, "firefox.desktop", "[Desktop Entry]\nType=Application\nName=Firefox\n");
        write(system_, "kde/konsole.desktop", "[Desktop Entry]\nType=Application\nName=Konsole\n");
        // The user's own entry hides the system one, also when it hides itself.
        write(system_, "gone.desktop", "[Desktop Entry]\nType=Application\nName=Gone\n");
        write(user_, "gone.desktop", "[Desktop Entry]\nType=Application\nName=Gone\nHidden=true\n");
        write(system_, "link.desktop", "[Desktop Entry]\nType=Link\nName=Link\n");
    }

    static void write(const QTemporaryDir& dir, const char* name, const char* text) {
        const QString path = dir.filePath(QString::fromUtf8(name));
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    X11DesktopEntries entries(QStringList locales = {}) {
        return X11DesktopEntries({user_.path(), system_.path()}, std::move(locales));
    }

    QTemporaryDir user_;
    QTemporaryDir system_;
};

struct IdentityCase {
    const char* name;
    X11IdentityHints hints;
    std::optional<QString> id;
    std::optional<QString> localizedName;
};

class X11IdentityRules : public X11Identity, public testing::WithParamInterface<IdentityCase> {};

TEST_P(X11IdentityRules, FollowTheMostSpecificHint) {
    auto known = entries();
    const auto identity = identifyApplication(GetParam().hints, known);
    EXPECT_EQ(identity.bundleIdentifier, GetParam().id);
    EXPECT_EQ(identity.localizedName, GetParam().localizedName);
}

INSTANTIATE_TEST_SUITE_P(
    X11, X11IdentityRules,
    testing::Values(IdentityCase{"GtkApplicationId",
                                 {QStringLiteral("org.example.Editor"), {}, "editor", "Editor-bin"},
                                 QStringLiteral("org.example.Editor"),
                                 QStringLiteral("Editor")},
                    IdentityCase{"KdeDesktopFileInSubdirectory",
                                 {{}, QStringLiteral("kde-konsole"), "konsole", "konsole"},
                                 QStringLiteral("kde-konsole"),
                                 QStringLiteral("Konsole")},
                    IdentityCase{"DesktopIdMatchingTheClass",
                                 {{}, {}, "Navigator", "Firefox"},
                                 QStringLiteral("firefox"),
                                 QStringLiteral("Firefox")},
                    IdentityCase{"HiddenEntryIsNotUsed",
                                 {{}, {}, "gone", "Gone"},
                                 QStringLiteral("Gone"),
                                 QStringLiteral("Gone")},
                    IdentityCase{"NoHintsAtAll", {}, std::nullopt, std::nullopt}),
    [](const testing::TestParamInfo<IdentityCase>& p) { return std::string(p.param.name); });

TEST_F(X11Identity, NamesFollowTheLocale) {
    auto german = entries({QStringLiteral("de_AT"), QStringLiteral("de")});
    EXPECT_EQ(german.byId(QStringLiteral("debian-xterm"))->name, QStringLiteral("X-Terminal"));
    EXPECT_FALSE(german.byId(QStringLiteral("link")));
}

} // namespace
} // namespace tilmora
