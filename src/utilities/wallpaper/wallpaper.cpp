#include "utilities/wallpaper/wallpaper.h"

#include "app/settings/settings.h"
#include "document/dialogs.h"
#include "document/fimage.h"
#include "utilities/desktop/portal.h"

#include <QDBusConnection>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace ostrivex {

namespace {

// A settings read or write takes a few milliseconds; a program that hangs is a failure.
constexpr int kGSettingsTimeoutMs = 5000;
// Setting a wallpaper without a preview answers at once; a desktop that asks the user
// first gets a minute.
constexpr int kPortalTimeoutMs = 60000;

bool runGSettings(const QStringList& args, QString* output) {
    const QString program = GSettings::Program();
    if (program.isEmpty()) return false;
    QProcess p;
    p.setProcessChannelMode(QProcess::SeparateChannels);
    p.start(program, args);
    if (!p.waitForStarted(kGSettingsTimeoutMs)) return false;
    if (!p.waitForFinished(kGSettingsTimeoutMs)) {
        p.kill();
        p.waitForFinished();
        return false;
    }
    if (p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0) return false;
    if (output) *output = QString::fromUtf8(p.readAllStandardOutput()).trimmed();
    return true;
}

// A text as a GVariant string literal.
QString quoted(QString text) {
    text.replace('\\', QLatin1String("\\\\"));
    text.replace('\'', QLatin1String("\\'"));
    return '\'' + text + '\'';
}

void informSubkey(QWidget* parent, const char* text) {
    DocumentDialogs::Inform(parent, QString::fromLatin1(text), QString::fromLatin1(kWallpaperTitle));
}

} // namespace

QString GSettings::Program() { return QStandardPaths::findExecutable(QStringLiteral("gsettings")); }

bool GSettings::Keys(const QString& schema, QStringList& keys) {
    QString out;
    if (!runGSettings({QStringLiteral("list-keys"), schema}, &out)) return false;
    keys = out.split('\n', Qt::SkipEmptyParts);
    for (QString& k : keys) k = k.trimmed();
    return true;
}

bool GSettings::Get(const QString& schema, const QString& key, QString& value) {
    return runGSettings({QStringLiteral("get"), schema, key}, &value);
}

bool GSettings::Set(const QString& schema, const QString& key, const QString& value) {
    return runGSettings({QStringLiteral("set"), schema, key, quoted(value)}, nullptr);
}

QString WallpaperPath() {
    return QString::fromStdString(AppFolder()) + '/' + QString::fromLatin1(kWallpaperFileName);
}

QString PictureOptions(int mode) {
    // TileWallpaper "1" for tile; WallpaperStyle "2" for stretch; both "0" centre.
    switch (mode) {
    case WallpaperTile:
        return QStringLiteral("wallpaper");
    case WallpaperStretch:
        return QStringLiteral("stretched");
    default:
        return QStringLiteral("centered");
    }
}

WallpaperRoute SetWallpaper(const QString& path, const QString& key, int mode, QWidget* parent) {
    const QString uri = QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
    QStringList keys;
    const bool haveSettings = GSettings::Keys(key, keys);

    QVariantMap options;
    options.insert(QStringLiteral("show-preview"), false);
    options.insert(QStringLiteral("set-on"), QStringLiteral("background"));
    const PortalResult portal = RunPortalRequest(
        QDBusConnection::sessionBus(), QString::fromLatin1(kWallpaperInterface),
        QStringLiteral("SetWallpaperURI"), {PortalRequest::ParentWindow(parent), uri}, options,
        kPortalTimeoutMs);
    if (portal.status == PortalResult::Status::Cancelled) return WallpaperRoute::Cancelled;
    if (portal.status == PortalResult::Status::Success) {
        // The portal has no word for the layout; GNOME-family desktops keep it in their
        // settings, beside the picture the portal wrote there.
        if (haveSettings && !GSettings::Set(key, QStringLiteral("picture-options"), PictureOptions(mode)))
            informSubkey(parent, kSetSubkeyErrorText);
        return WallpaperRoute::Portal;
    }

    if (!haveSettings) {
        DocumentDialogs::Inform(parent, QString::fromLatin1(kNoWallpaperServiceText).arg(path),
                                QString::fromLatin1(kWallpaperTitle));
        return WallpaperRoute::None;
    }
    // The two values as they stand (read as the registry's were; their values are not
    // needed after).
    QString options0, picture0;
    if (!GSettings::Get(key, QStringLiteral("picture-options"), options0))
        informSubkey(parent, kGetSubkeyErrorText);
    if (!GSettings::Get(key, QStringLiteral("picture-uri"), picture0))
        informSubkey(parent, kGetSubkeyErrorText);
    // The layout first, then the picture, as the style value went before the tile value
    // and the picture last. A desktop with a dark style shows picture-uri-dark.
    if (!GSettings::Set(key, QStringLiteral("picture-options"), PictureOptions(mode)))
        informSubkey(parent, kSetSubkeyErrorText);
    if (!GSettings::Set(key, QStringLiteral("picture-uri"), uri))
        informSubkey(parent, kSetSubkeyErrorText);
    if (keys.contains(QStringLiteral("picture-uri-dark")) &&
        !GSettings::Set(key, QStringLiteral("picture-uri-dark"), uri))
        informSubkey(parent, kSetSubkeyErrorText);
    return WallpaperRoute::Settings;
}

bool SetDocumentAsWallpaper(fImage& document, int mode, QWidget* parent) {
    if (!document.PictureExists()) return false;
    const QString path = WallpaperPath();
    if (!document.save(path, QStringLiteral("bmp"))) return false;
    SetWallpaper(path, QString::fromLatin1(kBackgroundSchema), mode, parent);
    return true;
}

} // namespace ostrivex
