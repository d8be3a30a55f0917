#include "updates/UpdateChecker.h"

#include "updates/UpdateManifest.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <memory>

namespace tilmora::UpdateChecker {

std::vector<std::int64_t> versionParts(const QString& version) {
    std::vector<std::int64_t> parts;
    QString piece;
    const auto finish = [&] {
        bool converted = false;
        const qlonglong value = piece.toLongLong(&converted, 10);
        if (converted) {
            parts.push_back(value);
        }
        piece.clear();
    };
    // Walks code points, so that numbers outside the basic plane split like the others.
    for (const char32_t character : version.toUcs4()) {
        if (QChar::isDigit(character) || QChar::category(character) == QChar::Number_Letter ||
            QChar::category(character) == QChar::Number_Other) {
            piece += QString::fromUcs4(&character, 1);
        } else if (!piece.isEmpty()) {
            finish();
        }
    }
    if (!piece.isEmpty()) {
        finish();
    }
    return parts;
}

std::strong_ordering compare(const QString& lhs, const QString& rhs) {
    const std::vector<std::int64_t> a = versionParts(lhs);
    const std::vector<std::int64_t> b = versionParts(rhs);
    for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
        const std::int64_t left = i < a.size() ? a[i] : 0;
        const std::int64_t right = i < b.size() ? b[i] : 0;
        if (left != right) {
            return left <=> right;
        }
    }
    return std::strong_ordering::equal;
}

Outcome result(const UpdateManifest& manifest, const QString& currentVersion) {
    const QString latest = manifest.version.trimmed();
    if (latest.isEmpty()) {
        return failed(QStringLiteral("the update information has an empty version."));
    }
    if (compare(latest, currentVersion) > 0) {
        return UpdateCheckResult{QStringLiteral("Version %1 is available. You are using %2.")
                                     .arg(latest, currentVersion),
                                 manifest.downloadURL ? manifest.downloadURL
                                                      : manifest.releaseNotesURL};
    }
    // Up to date: the notes of this release, not a download.
    return UpdateCheckResult{
        QStringLiteral("Tilmora is up to date. You are using %1.").arg(currentVersion),
        manifest.releaseNotesURL};
}

namespace {

bool isWebLink(const QUrl& url) {
    const QString scheme = url.scheme().toLower();
    return scheme == QLatin1StringView("http") || scheme == QLatin1StringView("https");
}

// One check in flight: its requests one after the other (each redirect is followed here, so
// that only http and https are ever followed and at most five times), ending exactly once,
// whichever of an answer, its size, a redirect or the clock ends it first. Deletes itself.
class Fetch : public QObject {
public:
    Fetch(QNetworkAccessManager& network, QString currentVersion, std::function<void(Outcome)> done,
          std::chrono::milliseconds limit)
        : QObject(&network)
        , network_(network)
        , currentVersion_(std::move(currentVersion))
        , done_(std::move(done)) {
        clock_.setSingleShot(true);
        connect(&clock_, &QTimer::timeout, this, [this, limit] {
            finish(failed(QStringLiteral("the update server did not answer within %1 seconds.")
                              .arg(static_cast<double>(limit.count()) / 1000.0)));
        });
        clock_.start(limit);
    }

    void get(const QUrl& url) {
        QNetworkRequest request(url);
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                             QNetworkRequest::ManualRedirectPolicy);
        body_.clear();
        reply_ = network_.get(request);
        QNetworkReply* reply = reply_;
        connect(reply, &QNetworkReply::metaDataChanged, this, [this, reply] {
            const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
            if (reply == reply_ && length.isValid() &&
                length.toLongLong() > UpdateManifest::maximumSize) {
                finish(tooLarge());
            }
        });
        connect(reply, &QNetworkReply::readyRead, this, [this, reply] {
            if (reply != reply_) {
                return;
            }
            body_ += reply->readAll();
            if (body_.size() > UpdateManifest::maximumSize) {
                finish(tooLarge());
            }
        });
        connect(reply, &QNetworkReply::finished, this, [this, reply] {
            if (reply == reply_) {
                finished();
            }
        });
    }

private:
    static Outcome tooLarge() {
        return failed(QStringLiteral("the update information is larger than 64 KiB."));
    }

    void finished() {
        if (ended_) {
            return;
        }
        if (reply_->error() != QNetworkReply::NoError &&
            reply_->error() < QNetworkReply::ContentAccessDenied) {
            // Transport failures; HTTP statuses are judged below with their number.
            finish(failed(reply_->errorString() + u'.'));
            return;
        }
        const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const QByteArray location = reply_->rawHeader("Location");
        if (status >= 300 && status <= 399 && !location.isEmpty()) {
            follow(reply_->url().resolved(QUrl::fromEncoded(location)));
            return;
        }
        if (status < 200) {
            // No status line came: the connection ended before an answer.
            finish(failed(
                QStringLiteral("the update server closed the connection without an answer.")));
            return;
        }
        if (status > 299) {
            finish(failed(
                QStringLiteral("the update server answered with HTTP status %1.").arg(status)));
            return;
        }
        body_ += reply_->readAll();
        const auto manifest = UpdateManifest::decode(body_);
        finish(manifest ? result(*manifest, currentVersion_) : Outcome(failed(manifest.error())));
    }

    void follow(const QUrl& to) {
        if (!isWebLink(to)) {
            finish(failed(
                QStringLiteral("the update server redirected to a %1 link.").arg(to.scheme())));
        } else if (++redirects_ > maximumRedirects) {
            finish(failed(QStringLiteral("the update server redirected more than %1 times.")
                              .arg(maximumRedirects)));
        } else {
            reply_->deleteLater();
            get(to);
        }
    }

    void finish(Outcome outcome) {
        if (ended_) {
            return;
        }
        ended_ = true;
        clock_.stop();
        if (reply_) {
            // Aborting emits finished() at once, which is ignored now.
            reply_->abort();
            reply_->deleteLater();
        }
        auto done = std::move(done_);
        deleteLater();
        done(std::move(outcome));
    }

    QNetworkAccessManager& network_;
    QNetworkReply* reply_ = nullptr;
    QString currentVersion_;
    std::function<void(Outcome)> done_;
    QByteArray body_;
    QTimer clock_;
    int redirects_ = 0;
    bool ended_ = false;
};

} // namespace

void check(const QString& currentVersion, const QUrl& endpoint, QNetworkAccessManager& network,
           std::function<void(Outcome)> done, std::chrono::milliseconds limit) {
    if (!isWebLink(endpoint)) {
        done(failed(QStringLiteral("the update address %1 is not a web link.")
                        .arg(endpoint.toDisplayString())));
        return;
    }
    (new Fetch(network, currentVersion, std::move(done), limit))->get(endpoint);
}

} // namespace tilmora::UpdateChecker
