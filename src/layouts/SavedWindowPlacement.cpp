#include "layouts/SavedWindowPlacement.h"

#include "geometry/JsonCoding.h"
#include "layouts/LayoutJson.h"

#include <QHashFunctions>
#include <QJsonObject>

namespace tilmora {

namespace {

const QString idKey = QStringLiteral("id");
const QString appNameKey = QStringLiteral("appName");
const QString bundleIdentifierKey = QStringLiteral("bundleIdentifier");
const QString titleKey = QStringLiteral("title");
const QString displayIDKey = QStringLiteral("displayID");
const QString displayNameKey = QStringLiteral("displayName");
const QString frameKey = QStringLiteral("frame");
const QString displayFrameKey = QStringLiteral("displayFrame");
const QString relativeFrameKey = QStringLiteral("relativeFrame");

// Presence is hashed too, so an absent value and a present default differ.
template <typename T>
std::size_t hashOptional(const std::optional<T>& value, std::size_t seed) {
    return value ? qHashMulti(seed, true, *value) : qHashMulti(seed, false);
}

} // namespace

std::optional<SavedWindowPlacement> SavedWindowPlacement::fromJson(const QJsonValue& value) {
    if (!value.isObject()) {
        return std::nullopt;
    }
    const QJsonObject object = value.toObject();
    const auto id = layoutjson::toUuid(object.value(idKey));
    const auto appName = json::toString(object.value(appNameKey));
    const auto bundleIdentifier =
        layoutjson::toOptional(object.value(bundleIdentifierKey), json::toString);
    const auto title = json::toString(object.value(titleKey));
    const auto displayID = layoutjson::toOptional(object.value(displayIDKey), json::toUInt32);
    const auto displayName = layoutjson::toOptional(object.value(displayNameKey), json::toString);
    const auto frame = WindowFrame::fromJson(object.value(frameKey));
    const auto displayFrame =
        layoutjson::toOptional(object.value(displayFrameKey), WindowFrame::fromJson);
    const auto relativeFrame =
        layoutjson::toOptional(object.value(relativeFrameKey), WindowFrame::fromJson);
    if (!id || !appName || !bundleIdentifier || !title || !displayID || !displayName || !frame ||
        !displayFrame || !relativeFrame) {
        return std::nullopt;
    }
    return SavedWindowPlacement{*id,    *appName,      *bundleIdentifier,
                                *title, *displayID,    *displayName,
                                *frame, *displayFrame, *relativeFrame};
}

std::optional<QByteArray> SavedWindowPlacement::encode() const {
    std::vector<json::EncodedField> fields;
    const auto add = [&fields](const QString& key, const QJsonValue& value) {
        fields.emplace_back(key, json::writeValue(value));
    };
    const auto addFrame = [&fields](const QString& key, const WindowFrame& value) {
        auto encoded = value.encode();
        if (encoded) {
            fields.emplace_back(key, std::move(*encoded));
        }
        return encoded.has_value();
    };

    add(idKey, layoutjson::uuidText(id));
    add(appNameKey, appName);
    if (bundleIdentifier) {
        add(bundleIdentifierKey, *bundleIdentifier);
    }
    add(titleKey, title);
    if (displayID) {
        add(displayIDKey, static_cast<qint64>(*displayID));
    }
    if (displayName) {
        add(displayNameKey, *displayName);
    }
    if (!addFrame(frameKey, frame) || (displayFrame && !addFrame(displayFrameKey, *displayFrame)) ||
        (relativeFrame && !addFrame(relativeFrameKey, *relativeFrame))) {
        return std::nullopt;
    }
    return json::writeEncodedObject(fields);
}

std::size_t qHash(const SavedWindowPlacement& placement, std::size_t seed) noexcept {
    seed = qHashMulti(seed, placement.id, placement.appName, placement.title, placement.frame);
    seed = hashOptional(placement.bundleIdentifier, seed);
    seed = hashOptional(placement.displayID, seed);
    seed = hashOptional(placement.displayName, seed);
    seed = hashOptional(placement.displayFrame, seed);
    return hashOptional(placement.relativeFrame, seed);
}

std::ostream& operator<<(std::ostream& stream, const SavedWindowPlacement& placement) {
    stream << "window " << layoutjson::uuidText(placement.id).toStdString() << " \""
           << placement.appName.toStdString() << "\" \"" << placement.title.toStdString()
           << "\" frame " << placement.frame;
    if (placement.bundleIdentifier) {
        stream << " bundle " << placement.bundleIdentifier->toStdString();
    }
    if (placement.displayID) {
        stream << " display " << *placement.displayID;
    }
    if (placement.displayName) {
        stream << " \"" << placement.displayName->toStdString() << "\"";
    }
    if (placement.displayFrame) {
        stream << " displayFrame " << *placement.displayFrame;
    }
    if (placement.relativeFrame) {
        stream << " relativeFrame " << *placement.relativeFrame;
    }
    return stream;
}

} // namespace tilmora
