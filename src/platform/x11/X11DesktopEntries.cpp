#include "platform/x11/X11DesktopEntries.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSet>

#include <system_error>

namespace tilmora {

namespace {

// Changes to the directories are looked for at most this often.
constexpr std::chrono::seconds recheckInterval{5};

QString unescape(const QString& value) {
    QString result;
    result.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != u'\\' || i + 1 == value.size()) {
            result += value[i];
            continue;
        }
        const QChar next = value[++i];
        result += next == u's'   ? QChar(u' ')
                  : next == u'n' ? QChar(u'\n')
                  : next == u't' ? QChar(u'\t')
                  : next == u'r' ? QChar(u'\r')
                                 : next;
    }
    return result;
}

} // namespace

X11DesktopEntries::X11DesktopEntries()
    : X11DesktopEntries(defaultDirectories(), defaultLocales()) {}

X11DesktopEntries::X11DesktopEntries(QStringList applicationDirectories, QStringList locales)
    : directories_(std::move(applicationDirectories))
    , locales_(std::move(locales)) {}

QStringList X11DesktopEntries::defaultDirectories() {
    QString dataHome = qEnvironmentVariable("XDG_DATA_HOME");
    if (dataHome.isEmpty()) {
        dataHome = QDir::homePath() + QStringLiteral("/.local/share");
    }
    QString dataDirs = qEnvironmentVariable("XDG_DATA_DIRS");
    if (dataDirs.isEmpty()) {
        dataDirs = QStringLiteral("/usr/local/share:/usr/share");
    }
    QStringList result{dataHome + QStringLiteral("/applications")};
    for (const QString& dir : dataDirs.split(u':', Qt::SkipEmptyParts)) {
        result.push_back(dir + QStringLiteral("/applications"));
    }
    return result;
}

QStringList X11DesktopEntries::defaultLocales() {
    // LC_MESSAGES decides the language of names, as the desktop entry rules say.
    QString locale = qEnvironmentVariable("LC_ALL");
    if (locale.isEmpty()) {
        locale = qEnvironmentVariable("LC_MESSAGES");
    }
    if (locale.isEmpty()) {
        locale = qEnvironmentVariable("LANG");
    }
    locale = locale.section(u'.', 0, 0).section(u'@', 0, 0);
    if (locale.isEmpty() || locale == u"C" || locale == u"POSIX") {
        return {};
    }
    QStringList result{locale};
    if (const QString language = locale.section(u'_', 0, 0); language != locale) {
        result.push_back(language);
    }
    return result;
}

std::optional<X11DesktopEntry> X11DesktopEntries::byId(const QString& id) {
    reloadIfChanged();
    if (const auto found = index_.byId.constFind(id); found != index_.byId.constEnd()) {
        return *found;
    }
    return std::nullopt;
}

std::optional<X11DesktopEntry> X11DesktopEntries::byStartupWMClass(const QByteArray& className,
                                                                   const QByteArray& instance) {
    reloadIfChanged();
    for (const QByteArray& name : {className, instance}) {
        if (name.isEmpty()) {
            continue;
        }
        if (const auto found = index_.byWindowClass.constFind(QString::fromUtf8(name));
            found != index_.byWindowClass.constEnd()) {
            return index_.byId.value(*found);
        }
    }
    return std::nullopt;
}

std::optional<X11DesktopEntry> X11DesktopEntries::byIdIgnoringCase(const QByteArray& className,
                                                                   const QByteArray& instance) {
    reloadIfChanged();
    for (const QByteArray& name : {className, instance}) {
        if (name.isEmpty()) {
            continue;
        }
        if (const auto found = index_.lowerCaseIds.constFind(QString::fromUtf8(name).toLower());
            found != index_.lowerCaseIds.constEnd()) {
            return index_.byId.value(*found);
        }
    }
    return std::nullopt;
}

void X11DesktopEntries::preload() {
    if (pending_.valid()) {
        return;
    }
    try {
        pending_ = std::async(std::launch::async, &X11DesktopEntries::scan, directories_, locales_);
        lastCheck_ = std::chrono::steady_clock::now();
    } catch (const std::system_error&) {
        // No thread to be had: the first lookup reads the entries itself.
    }
}

void X11DesktopEntries::reloadIfChanged() {
    if (pending_.valid()) {
        index_ = pending_.get();
        return;
    }
    const auto now = std::chrono::steady_clock::now();
    if (lastCheck_ && now - *lastCheck_ < recheckInterval) {
        return;
    }
    lastCheck_ = now;
    if (stampsOf(directories_) != index_.stamps || index_.byId.isEmpty()) {
        index_ = scan(directories_, locales_);
    }
}

std::vector<QDateTime> X11DesktopEntries::stampsOf(const QStringList& directories) {
    std::vector<QDateTime> stamps;
    stamps.reserve(static_cast<std::size_t>(directories.size()));
    for (const QString& dir : directories) {
        stamps.push_back(QFileInfo(dir).lastModified());
    }
    return stamps;
}

X11DesktopEntries::Index X11DesktopEntries::scan(const QStringList& directories,
                                                 const QStringList& locales) {
    Index index;
    index.stamps = stampsOf(directories);
    QSet<QString> seen;
    for (const QString& dir : directories) {
        const QString base = QDir(dir).absolutePath() + u'/';
        QDirIterator files(dir, {QStringLiteral("*.desktop")}, QDir::Files,
                           QDirIterator::Subdirectories | QDirIterator::FollowSymlinks);
        while (files.hasNext()) {
            const QString path = files.next();
            QString id = QFileInfo(path).absoluteFilePath().mid(base.size());
            id.chop(static_cast<qsizetype>(sizeof(".desktop") - 1));
            id.replace(u'/', u'-');
            // An entry in an earlier directory hides the same id further down, also when it
            // is hidden itself.
            if (seen.contains(id)) {
                continue;
            }
            seen.insert(id);
            if (const auto entry = parse(path, id, locales)) {
                index.byId.insert(id, *entry);
                index.lowerCaseIds.insert(id.toLower(), id);
                if (!entry->startupWMClass.isEmpty() &&
                    !index.byWindowClass.contains(entry->startupWMClass)) {
                    index.byWindowClass.insert(entry->startupWMClass, id);
                }
            }
        }
    }
    return index;
}

std::optional<X11DesktopEntry> X11DesktopEntries::parse(const QString& path, const QString& id,
                                                        const QStringList& locales) {
    QFile file(path);
    // Desktop files are small; a huge one is not a desktop entry.
    constexpr qint64 sizeLimit = 1 << 20;
    if (file.size() > sizeLimit || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    X11DesktopEntry entry;
    entry.id = id;
    QHash<QString, QString> localized;
    bool inMainGroup = false;
    bool isApplication = false;
    bool hidden = false;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.isEmpty() || line.startsWith(u'#')) {
            continue;
        }
        if (line.startsWith(u'[')) {
            inMainGroup = line == u"[Desktop Entry]";
            continue;
        }
        if (!inMainGroup) {
            continue;
        }
        const auto equals = line.indexOf(u'=');
        if (equals <= 0) {
            continue;
        }
        const QString key = line.left(equals).trimmed();
        const QString value = unescape(line.mid(equals + 1).trimmed());
        if (key == u"Name") {
            entry.name = value;
        } else if (key.startsWith(u"Name[") && key.endsWith(u']')) {
            localized.insert(key.mid(5, key.size() - 6), value);
        } else if (key == u"StartupWMClass") {
            entry.startupWMClass = value;
        } else if (key == u"Type") {
            isApplication = value == u"Application";
        } else if (key == u"Hidden") {
            hidden = value == u"true";
        }
    }
    if (!isApplication || hidden) {
        return std::nullopt;
    }
    for (const QString& locale : locales) {
        if (const auto found = localized.constFind(locale); found != localized.constEnd()) {
            entry.name = *found;
            break;
        }
    }
    return entry;
}

} // namespace tilmora
