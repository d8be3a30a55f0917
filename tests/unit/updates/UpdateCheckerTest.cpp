// The version rules and the manifest, then whole checks through the store against an HTTP
// server of the test's own that answers each request as the case says.
#include "updates/UpdateChecker.h"
#include "core/AppStore.h"
#include "core/AppVersion.h"
#include "support/FakePlatform.h"
#include "updates/UpdateManifest.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <gtest/gtest.h>

#include <deque>

using namespace tilmora;
using namespace std::chrono_literals;

namespace {

TEST(UpdateCheckerTest, VersionPartsAndOrder) {
    using Parts = std::vector<std::int64_t>;
    // clang-format off
    const std::pair<const char*, Parts> parts[] = {
        {"1.4.0", {1, 4, 0}}, {"v2.10-beta3", {2, 10, 3}}, {"1.2 (45)", {1, 2, 45}}, {"beta", {}},
        {"", {}}, {"1..2", {1, 2}},
        // Digits outside ASCII split and are dropped; so is a piece beyond 64 bits.
        {"1.\u0662.3", {1, 3}}, {"99999999999999999999.1", {1}}, {"\u00bd2", {}},
    };
    // clang-format on
    for (const auto& [version, expected] : parts) {
        EXPECT_EQ(UpdateChecker::versionParts(QString::fromUtf8(version)), expected) << version;
    }
    // clang-format off
    const std::tuple<const char*, const char*, std::strong_ordering> orders[] = {
        {"1.4", "1.4.0", std::strong_ordering::equal}, {"1.10", "1.9", std::strong_ordering::greater},
        {"2.0-beta1", "2.0", std::strong_ordering::greater}, {"beta", "1.0", std::strong_ordering::less},
        {"", "", std::strong_ordering::equal}, {"1.9.9", "1.10", std::strong_ordering::less},
    };
    // clang-format on
    for (const auto& [lhs, rhs, order] : orders) {
        EXPECT_EQ(UpdateChecker::compare(QString::fromUtf8(lhs), QString::fromUtf8(rhs)), order)
            << lhs << " vs " << rhs;
    }
}

TEST(UpdateCheckerTest, ManifestMeaningForTheRunningVersion) {
    const QUrl download(QStringLiteral("https://example.org/get"));
    const QUrl notes(QStringLiteral("http://example.org/notes"));
    struct Case {
        const char* body;
        const char* running;
        // The message, or the reason of the failure.
        const char* said;
        std::optional<QUrl> link;
    };
    // clang-format off
    const Case cases[] = {
        {R"({"version":"1.4.0","downloadURL":"https://example.org/get","releaseNotesURL":"http://example.org/notes"})", "1.4", "Tilmora is up to date. You are using 1.4.", notes},
        {R"({"version":"1.4.0"})", "1.4", "Tilmora is up to date. You are using 1.4.", std::nullopt},
        {R"({"version":"1.10","downloadURL":"https://example.org/get","extra":[1]})", "1.9.9", "Version 1.10 is available. You are using 1.9.9.", download},
        {"{\"version\":\"  2.0 \\n\",\"releaseNotesURL\":\"http://example.org/notes\"}", "1.0", "Version 2.0 is available. You are using 1.0.", notes},
        {R"({"version":"beta","downloadURL":"https://example.org/get"})", "1.0", "Tilmora is up to date. You are using 1.0.", std::nullopt},
        {R"({"version":"3","downloadURL":null,"releaseNotesURL":null})", "1.0", "Version 3 is available. You are using 1.0.", std::nullopt},
        // A link that is not http(s) is never offered.
        {R"j({"version":"3","downloadURL":"file:///etc/passwd","releaseNotesURL":"javascript:alert(1)"})j", "1.0", "Version 3 is available. You are using 1.0.", std::nullopt},
        {R"({"version":"3","downloadURL":"ftp://example.org/x","releaseNotesURL":"http://example.org/notes"})", "1.0", "Version 3 is available. You are using 1.0.", notes},
        {R"({"version":" \n "})", "1.0", "the update information has an empty version.", std::nullopt},
        {R"({"version":2})", "1.0", "the update information has no \"version\" text.", std::nullopt},
        {R"({"downloadURL":"https://example.org/get"})", "1.0", "the update information has no \"version\" text.", std::nullopt},
        {R"({"version":"2","downloadURL":7})", "1.0", "the update information's \"downloadURL\" is not text.", std::nullopt},
        {R"({"version":"2","releaseNotesURL":"not a link"})", "1.0", "the update information's \"releaseNotesURL\" is not a link.", std::nullopt},
        {R"(["1.0"])", "1.0", "the update information is not a JSON object.", std::nullopt},
        {R"({"version":"1.0")", "1.0", "the update information is not valid JSON (unterminated string at byte 16).", std::nullopt},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.body);
        const auto manifest = UpdateManifest::decode(QByteArray(c.body));
        const UpdateChecker::Outcome outcome =
            manifest ? UpdateChecker::result(*manifest, QString::fromUtf8(c.running))
                     : UpdateChecker::Outcome(failed(manifest.error()));
        EXPECT_EQ(outcome ? outcome->message : outcome.error(), QString::fromUtf8(c.said));
        EXPECT_EQ(outcome ? outcome->downloadURL : std::nullopt, c.link);
    }
    const QByteArray longVersion = "{\"version\":\"" + QByteArray(65, '1') + "\"}";
    EXPECT_EQ(UpdateManifest::decode(longVersion).error(),
              QStringLiteral("the update information's version is longer than 64 characters."));
    EXPECT_EQ(UpdateManifest::decode(QByteArray(64 * 1024 + 1, ' ')).error(),
              QStringLiteral("the update information is larger than 64 KiB."));
}

// Answers each request with the next scripted answer: raw HTTP bytes, sent after a delay, or
// nothing at all (the connection is held open).
class ScriptedServer {
public:
    struct Answer {
        QByteArray bytes;
        std::chrono::milliseconds delay{0};
    };

    ScriptedServer() {
        EXPECT_TRUE(server_.listen(QHostAddress::LocalHost));
        QObject::connect(&server_, &QTcpServer::newConnection, [this] {
            while (QTcpSocket* socket = server_.nextPendingConnection()) {
                QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                    if (!socket->readAll().contains("\r\n\r\n") || answers.empty()) {
                        return;
                    }
                    const Answer answer = answers.front();
                    if (answers.size() > 1) {
                        answers.pop_front();
                    }
                    ++requests;
                    if (answer.bytes.isEmpty()) {
                        return;
                    }
                    QTimer::singleShot(answer.delay, socket, [socket, answer] {
                        socket->write(answer.bytes);
                        socket->disconnectFromHost();
                    });
                });
            }
        });
    }

    QUrl url(const char* path = "/api/update") const {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2")
                        .arg(server_.serverPort())
                        .arg(QString::fromUtf8(path)));
    }

    static QByteArray http(int status, const QByteArray& body, const QByteArray& headers = {}) {
        return "HTTP/1.0 " + QByteArray::number(status) +
               " X\r\nContent-Length: " + QByteArray::number(body.size()) +
               "\r\nConnection: close\r\n" + headers + "\r\n" + body;
    }

    std::deque<Answer> answers;
    int requests = 0;

private:
    QTcpServer server_;
};

class UpdateCheckTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        if (QCoreApplication::instance() == nullptr) {
            static int argc = 1;
            static char name[] = "updates_tests";
            static char* argv[] = {name, nullptr};
            new QCoreApplication(argc, argv);
        }
    }

    // Runs the event loop until `done` holds; false after 10 s.
    static bool waitFor(const std::function<bool()>& done) {
        QElapsedTimer clock;
        clock.start();
        while (!done()) {
            if (clock.elapsed() > 10000) {
                return false;
            }
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        }
        return true;
    }
};

TEST_F(UpdateCheckTest, TheStoreReportsEachAnswerInOneLine) {
    ScriptedServer server;
    // Read once by the store, so set before its first check.
    qputenv("TILMORA_UPDATE_URL", server.url().toEncoded());
    FakePlatform fake;
    AppStore store(fake.platform());
    EXPECT_EQ(store.updateStatusMessage(), QStringLiteral("Ready to check for updates."));

    const QByteArray newer = R"({"version":"99.0","downloadURL":"https://example.org/get"})";
    const QByteArray redirectToSelf =
        ScriptedServer::http(302, "", "Location: " + server.url().toEncoded() + "\r\n");
    const QString fail = QStringLiteral("Could not check for updates: ");
    struct Case {
        const char* name;
        std::vector<QByteArray> answers;
        QString said;
        std::optional<QUrl> link;
    };
    const std::vector<Case> cases{
        {"Newer",
         {ScriptedServer::http(200, newer)},
         QStringLiteral("Version 99.0 is available. You are using %1.").arg(AppVersion::current()),
         QUrl(QStringLiteral("https://example.org/get"))},
        {"Same",
         {ScriptedServer::http(200, "{\"version\":\"" + AppVersion::current().toUtf8() + "\"}")},
         QStringLiteral("Tilmora is up to date. You are using %1.").arg(AppVersion::current()),
         std::nullopt},
        {"Older",
         {ScriptedServer::http(200, R"({"version":"0.0.1","downloadURL":"https://example.org/get",)"
                                    R"("releaseNotesURL":"https://example.org/notes"})")},
         QStringLiteral("Tilmora is up to date. You are using %1.").arg(AppVersion::current()),
         QUrl(QStringLiteral("https://example.org/notes"))},
        {"ReleaseNotesOnly",
         {ScriptedServer::http(
             200, R"({"version":"99","releaseNotesURL":"https://example.org/notes"})")},
         QStringLiteral("Version 99 is available. You are using %1.").arg(AppVersion::current()),
         QUrl(QStringLiteral("https://example.org/notes"))},
        {"NotModified",
         {ScriptedServer::http(304, "")},
         fail + QStringLiteral("the update server answered with HTTP status 304."),
         std::nullopt},
        {"NotFound",
         {ScriptedServer::http(404, "gone")},
         fail + QStringLiteral("the update server answered with HTTP status 404."),
         std::nullopt},
        {"Huge",
         {ScriptedServer::http(200, QByteArray(200 * 1024, '{'))},
         fail + QStringLiteral("the update information is larger than 64 KiB."),
         std::nullopt},
        {"RedirectLoop",
         {redirectToSelf},
         fail + QStringLiteral("the update server redirected more than 5 times."),
         std::nullopt},
        {"RedirectToAFile",
         {ScriptedServer::http(302, "", "Location: file:///etc/passwd\r\n")},
         fail + QStringLiteral("the update server redirected to a file link."),
         std::nullopt},
        {"RedirectedTwiceThenAnswered",
         {ScriptedServer::http(301, "", "Location: /moved\r\n"),
          ScriptedServer::http(307, "", "Location: /moved/again\r\n"),
          ScriptedServer::http(200, newer)},
         QStringLiteral("Version 99.0 is available. You are using %1.").arg(AppVersion::current()),
         QUrl(QStringLiteral("https://example.org/get"))},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        server.answers.clear();
        for (const QByteArray& bytes : c.answers) {
            server.answers.push_back({bytes});
        }
        store.setUpdateDownloadURL(QUrl(QStringLiteral("https://example.org/stale")));
        store.checkForUpdates();
        EXPECT_TRUE(store.isCheckingForUpdates());
        EXPECT_EQ(store.updateStatusMessage(), QStringLiteral("Checking for updates..."));
        EXPECT_FALSE(store.updateDownloadURL());
        ASSERT_TRUE(waitFor([&] { return !store.isCheckingForUpdates(); }));
        EXPECT_EQ(store.updateStatusMessage(), c.said);
        EXPECT_EQ(store.updateDownloadURL(), c.link);
    }
    qunsetenv("TILMORA_UPDATE_URL");
}

TEST_F(UpdateCheckTest, ASlowOrAbsentServerEndsTheCheck) {
    ScriptedServer server;
    server.answers.push_back({ScriptedServer::http(200, R"({"version":"1"})"), 5000ms});
    QNetworkAccessManager network;
    std::optional<UpdateChecker::Outcome> outcome;
    QElapsedTimer clock;
    clock.start();
    UpdateChecker::check(
        QStringLiteral("1"), server.url(), network,
        [&](UpdateChecker::Outcome o) { outcome = std::move(o); }, 300ms);
    ASSERT_TRUE(waitFor([&] { return outcome.has_value(); }));
    EXPECT_LT(clock.elapsed(), 3000);
    EXPECT_EQ(outcome->error(),
              QStringLiteral("the update server did not answer within 0.3 seconds."));

    // Nobody listens on a port just closed.
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    const quint16 port = closed.serverPort();
    closed.close();
    outcome.reset();
    UpdateChecker::check(QStringLiteral("1"),
                         QUrl(QStringLiteral("http://127.0.0.1:%1/api/update").arg(port)), network,
                         [&](UpdateChecker::Outcome o) { outcome = std::move(o); });
    ASSERT_TRUE(waitFor([&] { return outcome.has_value(); }));
    EXPECT_EQ(outcome->error(), QStringLiteral("Connection refused."));
}

} // namespace
