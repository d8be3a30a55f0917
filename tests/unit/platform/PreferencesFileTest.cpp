// The settings file on disk: values keep their form across a restart, a write that fails on the
// way (a full disk, a failing device) leaves the previous file byte for byte and says why, only
// regular files are read or written, writers keep each other's keys, unreadable values are kept
// beside the file, and the file's place follows XDG_CONFIG_HOME and HOME.
#include "platform/file/PreferencesFile.h"
#include "platform/file/FileLock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <limits>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

using namespace tilmora;
using namespace std::chrono_literals;

namespace {

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::unique_ptr<PreferencesFile> open(const QString& path, FileCalls& calls = FileCalls::system()) {
    auto opened = PreferencesFile::open(path, PreferencesFile::Locking::eachWrite, calls);
    EXPECT_TRUE(opened) << opened.error().toStdString();
    return opened ? std::move(*opened) : nullptr;
}

class PreferencesFileTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("config/tilmora/tilmora.conf"));
};

TEST_F(PreferencesFileTest, ValuesKeepTheirFormAcrossARestart) {
    // What was written, then what each of the four reads answers: number, flag, bytes, text.
    using Reads =
        std::tuple<std::optional<double>, bool, std::optional<QByteArray>, std::optional<QString>>;
    using Write = std::function<Preferences::WriteResult(Preferences&, const QString&)>;
    const double infinity = std::numeric_limits<double>::infinity();
    // clang-format off
    const std::vector<std::pair<Write, Reads>> cases{
        {[](auto& p, auto& k) { return p.setDouble(k, 12.5); }, {12.5, true, {}, {}}},
        {[](auto& p, auto& k) { return p.setDouble(k, 5e-324); }, {5e-324, true, {}, {}}},
        {[&](auto& p, auto& k) { return p.setDouble(k, -infinity); }, {-infinity, true, {}, {}}},
        {[](auto& p, auto& k) { return p.setDouble(k, 0); }, {0.0, false, {}, {}}},
        {[](auto& p, auto& k) { return p.setInteger(k, -3); }, {-3.0, true, {}, {}}},
        {[](auto& p, auto& k) { return p.setBool(k, true); }, {std::nullopt, true, {}, {}}},
        {[](auto& p, auto& k) { return p.setData(k, "[{\"a\":\"b, c\"}]"); }, {std::nullopt, false, "[{\"a\":\"b, c\"}]", {}}},
        {[](auto& p, auto& k) { return p.setData(k, "double:1"); }, {std::nullopt, false, "double:1", {}}},
        // A write replaces the earlier value whatever its form.
        {[](auto& p, auto& k) { (void)p.setBool(k, true); return p.setData(k, "x"); }, {std::nullopt, false, "x", {}}},
        {[](auto& p, auto& k) { (void)p.setData(k, "x"); return p.setInteger(k, 0); }, {0.0, false, {}, {}}},
    };
    // clang-format on
    auto preferences = open(path);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_TRUE(cases[i].first(*preferences, QString::number(i)));
    }
    for (int run = 0; run < 2; ++run) {
        for (std::size_t i = 0; i < cases.size(); ++i) {
            const QString key = QString::number(i);
            EXPECT_EQ(Reads(preferences->doubleValue(key), preferences->boolValue(key),
                            preferences->dataValue(key), preferences->stringValue(key)),
                      cases[i].second)
                << key.toStdString() << " in run " << run;
        }
        preferences = open(path);
    }
    // Settings are the user's own.
    struct stat info {};
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600U);
}

// Fails one system call the way a full disk or a failing device makes it fail.
class FaultyCalls : public FileCalls {
public:
    enum class Fault {
        none,
        writeFull,
        writeShortThenFull,
        fsyncIO,
        closeIO,
        renameCrossDevice,
        directoryFsyncIO
    };
    Fault fault = Fault::none;

    ssize_t write(int descriptor, const void* data, std::size_t size) override {
        if (fault == Fault::writeFull || (fault == Fault::writeShortThenFull && writes++ > 0)) {
            errno = ENOSPC;
            return -1;
        }
        return FileCalls::write(descriptor, data,
                                fault == Fault::writeShortThenFull ? size / 2 : size);
    }
    int fsync(int descriptor) override {
        const bool directory = fsyncs++ > 0;
        if ((fault == Fault::fsyncIO && !directory) ||
            (fault == Fault::directoryFsyncIO && directory)) {
            errno = EIO;
            return -1;
        }
        return FileCalls::fsync(descriptor);
    }
    int close(int descriptor) override {
        const int result = FileCalls::close(descriptor);
        if (fault == Fault::closeIO) {
            errno = EIO;
            return -1;
        }
        return result;
    }
    int rename(const char* from, const char* to) override {
        if (fault == Fault::renameCrossDevice) {
            errno = EXDEV;
            return -1;
        }
        return FileCalls::rename(from, to);
    }

    int writes = 0;
    int fsyncs = 0;
};

TEST_F(PreferencesFileTest, AFailedWriteLeavesThePreviousFileByteForByteAndSaysWhy) {
    using Fault = FaultyCalls::Fault;
    // The fault, the reason it gives, and whether the new contents are in place all the same
    // (the directory's flush comes after the rename).
    const std::tuple<Fault, const char*, bool> cases[] = {
        {Fault::writeFull, "No space left on device", false},
        {Fault::writeShortThenFull, "No space left on device", false},
        {Fault::fsyncIO, "Input/output error", false},
        {Fault::closeIO, "Input/output error", false},
        {Fault::renameCrossDevice, "Invalid cross-device link", false},
        {Fault::directoryFsyncIO, "Input/output error", true},
    };
    const QByteArray layouts(20000, 'L');
    for (const auto& [fault, reason, replaced] : cases) {
        SCOPED_TRACE(reason);
        QFile::remove(path);
        FaultyCalls calls;
        auto preferences = open(path, calls);
        ASSERT_TRUE(preferences->setData(QStringLiteral("Tilmora.savedLayouts"), layouts));
        ASSERT_TRUE(preferences->setBool(QStringLiteral("Tilmora.flag"), true));
        const QByteArray before = contents(path);

        calls.fault = fault;
        calls.writes = calls.fsyncs = 0;
        const auto written = preferences->setData(QStringLiteral("Tilmora.savedLayouts"), "[]");
        ASSERT_FALSE(written);
        EXPECT_EQ(written.error(), (PreferencesFailure{path, QString::fromUtf8(reason)}));
        EXPECT_EQ(contents(path) == before, !replaced);
        EXPECT_EQ(
            QDir(QFileInfo(path).path()).entryList(QDir::Files),
            QStringList({QStringLiteral("tilmora.conf"), QStringLiteral("tilmora.conf.lock")}));
        // What this process reads is what the file holds.
        EXPECT_TRUE(preferences->dataValue(QStringLiteral("Tilmora.savedLayouts")) ==
                    (replaced ? QByteArray("[]") : layouts));
    }
}

TEST_F(PreferencesFileTest, WritersKeepEachOthersKeys) {
    auto first = open(path);
    auto second = open(path);
    ASSERT_TRUE(first->setDouble(QStringLiteral("Tilmora.layoutGap"), 4));
    // The second read the file before the first wrote; its write keeps the first's key.
    ASSERT_TRUE(second->setData(QStringLiteral("Tilmora.savedLayouts"), "[]"));
    ASSERT_TRUE(first->setBool(QStringLiteral("Tilmora.flag"), true));
    const auto third = open(path);
    EXPECT_EQ(third->doubleValue(QStringLiteral("Tilmora.layoutGap")), 4.0);
    EXPECT_EQ(third->dataValue(QStringLiteral("Tilmora.savedLayouts")), QByteArray("[]"));
    EXPECT_TRUE(third->boolValue(QStringLiteral("Tilmora.flag")));
}

TEST_F(PreferencesFileTest, TheLockIsWaitedForWithinItsTimeOut) {
    const QString lockPath = path + QStringLiteral(".lock");
    {
        const auto held = FileLock::acquire(lockPath, 0ms);
        ASSERT_TRUE(held);
        const auto start = std::chrono::steady_clock::now();
        const auto refused = FileLock::acquire(lockPath, 100ms);
        ASSERT_FALSE(refused);
        EXPECT_TRUE(refused.error().timedOut);
        EXPECT_GE(std::chrono::steady_clock::now() - start, 100ms);
    }
    EXPECT_TRUE(FileLock::acquire(lockPath, 0ms));
}

// Things that are not regular files, each behind a link where the settings file is expected.
TEST_F(PreferencesFileTest, OnlyRegularFilesAreReadOrReplaced) {
    const QString scratch = dir.filePath(QStringLiteral("things"));
    ASSERT_TRUE(QDir().mkpath(scratch));
    const auto at = [&](const char* name) { return scratch + u'/' + QLatin1StringView(name); };
    const auto native = [](const QString& p) { return QFile::encodeName(p); };
    ASSERT_EQ(::mkfifo(native(at("fifo")).constData(), 0600), 0);
    ASSERT_TRUE(QDir().mkpath(at("directory")));
    const int sock = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray socketPath = native(at("socket"));
    std::copy(socketPath.begin(), socketPath.end(), address.sun_path);
    ASSERT_EQ(::bind(sock, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    // clang-format off
    std::vector<std::pair<QString, const char*>> targets{
        {at("fifo"), "it is a named pipe, not a regular file"},
        {at("directory"), "it is a directory, not a regular file"},
        {at("socket"), "it is a socket, not a regular file"},
        {at("nothing"), "it is a symbolic link to a file that does not exist"},
    };
    // clang-format on
    // A device node of the test's own where it may make one (root): a faulty build run as
    // root would replace the system's /dev/null. Anyone else cannot harm that one.
    const bool ownDevice =
        ::mknod(native(at("device")).constData(), S_IFCHR | 0600, makedev(1, 3)) == 0;
    targets.emplace_back(ownDevice ? at("device") : QStringLiteral("/dev/null"),
                         "it is a character device, not a regular file");
    QDir().mkpath(QFileInfo(path).path());
    for (const auto& [target, reason] : targets) {
        SCOPED_TRACE(target.toStdString());
        QFile::remove(path);
        ASSERT_TRUE(QFile::link(target, path));
        const auto opened = PreferencesFile::open(path, PreferencesFile::Locking::untilClosed);
        ASSERT_FALSE(opened);
        EXPECT_EQ(opened.error(), QStringLiteral("cannot use the settings file %1: %2")
                                      .arg(path, QString::fromUtf8(reason)));
        EXPECT_EQ(QFileInfo(path).symLinkTarget(), target);
    }

    // A regular file that becomes something else after it was read is not replaced either.
    QFile::remove(path);
    auto preferences = open(path);
    ASSERT_TRUE(QFile::link(at("fifo"), path));
    const auto written = preferences->setBool(QStringLiteral("Tilmora.flag"), true);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().reason, QStringLiteral("it is a named pipe, not a regular file"));
    struct stat info {};
    ASSERT_EQ(::stat(native(at("fifo")).constData(), &info), 0);
    EXPECT_TRUE(S_ISFIFO(info.st_mode));
    ::close(sock);
}

TEST_F(PreferencesFileTest, UnreadableValuesAreKeptOnceBesideTheFile) {
    auto preferences = open(path);
    const QByteArray broken = "[{\"id\":\"not a uuid\"}]";
    const auto kept = preferences->keepUnreadable(QStringLiteral("Tilmora.savedLayouts"), broken);
    ASSERT_TRUE(kept);
    EXPECT_TRUE(kept->startsWith(path + QStringLiteral(".savedLayouts.unreadable-")));
    EXPECT_EQ(contents(*kept), broken);
    EXPECT_EQ(*preferences->keepUnreadable(QStringLiteral("Tilmora.savedLayouts"), broken), *kept);
    const auto other = preferences->keepUnreadable(QStringLiteral("Tilmora.savedLayouts"), "{");
    ASSERT_TRUE(other);
    EXPECT_NE(*other, *kept);
    EXPECT_EQ(QDir(QFileInfo(path).path())
                  .entryList({QStringLiteral("*.unreadable-*")}, QDir::Files)
                  .size(),
              2);
}

TEST(PreferencesFilePathTest, FollowsXdgConfigHomeThenHomeAndRefusesWithoutEither) {
    const QByteArray savedConfig = qgetenv("XDG_CONFIG_HOME");
    const QByteArray savedHome = qgetenv("HOME");
    const bool hadConfig = qEnvironmentVariableIsSet("XDG_CONFIG_HOME");
    const bool hadHome = qEnvironmentVariableIsSet("HOME");
    // XDG_CONFIG_HOME and HOME (nullptr: unset), and the path (nullptr: refused).
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"/x/config", "/home/u", "/x/config/tilmora/tilmora.conf"},
        {nullptr, "/home/u", "/home/u/.config/tilmora/tilmora.conf"},
        {"", "/home/u", "/home/u/.config/tilmora/tilmora.conf"},
        {"relative", "/home/u", "/home/u/.config/tilmora/tilmora.conf"},
        {nullptr, nullptr, nullptr},
        {nullptr, "", nullptr},
        {"relative", "home", nullptr},
    };
    const auto set = [](const char* name, const char* value) {
        if (value) {
            qputenv(name, value);
        } else {
            qunsetenv(name);
        }
    };
    for (const auto& [config, home, expected] : cases) {
        set("XDG_CONFIG_HOME", config);
        set("HOME", home);
        const auto path = PreferencesFile::defaultPath();
        EXPECT_EQ(path.has_value(), expected != nullptr)
            << (config ? config : "-") << " " << (home ? home : "-");
        if (path && expected) {
            EXPECT_EQ(*path, QString::fromUtf8(expected));
        }
    }
    set("XDG_CONFIG_HOME", hadConfig ? savedConfig.constData() : nullptr);
    set("HOME", hadHome ? savedHome.constData() : nullptr);
}

} // namespace
