// GLib first: its headers use names that Qt defines as macros.
#include <gio/gio.h>

#include "platform/DefaultApplications.h"

namespace orvane {

// The freedesktop rules (mimeapps.list in every data and config folder, then the desktop files'
// own claims) as GIO applies them, so the answer is the one the desktop itself gives.
QString DefaultApplications::nameFor(const QString& path, const QString& typeName) {
    Q_UNUSED(path);
    if (typeName.isEmpty()) return {};
    const QByteArray type = typeName.toUtf8();
    GAppInfo* app = g_app_info_get_default_for_type(type.constData(), FALSE);
    if (!app) return {};
    const QString name = QString::fromUtf8(g_app_info_get_display_name(app));
    g_object_unref(app);
    return name;
}

} // namespace orvane
