// The installed desktop entries (XDG .desktop files of type Application): each entry's id,
// its name in the user's language and the window class its windows carry. Read on first use
// (or ahead of it, in the background) and again when an applications directory changes.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

#include <chrono>
#include <future>
#include <optional>
#include <vector>

namespace tilmora {

struct X11DesktopEntry {
    // The desktop file id: the path below applications/ with '/' turned into '-', without
    // ".desktop".
    QString id;
    // Name in the first matching locale, else the untranslated Name.
    QString name;
    QString startupWMClass;

    friend bool operator==(const X11DesktopEntry&, const X11DesktopEntry&) = default;
};

class X11DesktopEntries {
public:
    // $XDG_DATA_HOME/applications, then applications/ in each of $XDG_DATA_DIRS, in the
    // user's locale.
    X11DesktopEntries();
    // The given directories (earlier ones win for the same id) and locales such as "de_DE",
    // "de" in order of preference.
    X11DesktopEntries(QStringList applicationDirectories, QStringList locales);

    std::optional<X11DesktopEntry> byId(const QString& id);
    // The entry whose StartupWMClass equals the class (or else the instance) name exactly.
    std::optional<X11DesktopEntry> byStartupWMClass(const QByteArray& className,
                                                    const QByteArray& instance);
    // The entry whose id equals the class or instance name, ignoring case.
    std::optional<X11DesktopEntry> byIdIgnoringCase(const QByteArray& className,
                                                    const QByteArray& instance);

    // Starts reading the entries on a worker thread, so that the first lookup finds them
    // ready when there was other work to wait for in the meantime.
    void preload();

    static QStringList defaultDirectories();
    static QStringList defaultLocales();

private:
    struct Index {
        std::vector<QDateTime> stamps;
        QHash<QString, X11DesktopEntry> byId;
        QHash<QString, QString> lowerCaseIds;
        QHash<QString, QString> byWindowClass;
    };

    void reloadIfChanged();
    static std::vector<QDateTime> stampsOf(const QStringList& directories);
    static Index scan(const QStringList& directories, const QStringList& locales);
    static std::optional<X11DesktopEntry> parse(const QString& path, const QString& id,
                                                const QStringList& locales);

    QStringList directories_;
    QStringList locales_;
    std::optional<std::chrono::steady_clock::time_point> lastCheck_;
    Index index_;
    std::future<Index> pending_;
};

} // namespace tilmora
