// GLib first: its headers use names that Qt defines as macros.
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include "platform/DefaultApplications.h"
#include "platform/NativePath.h"

#include <algorithm>

namespace orvane {

namespace {
using Application = DefaultApplications::Application;

Application describe(GAppInfo* app) {
    Application found;
    if (!app) return found;
    found.id = QString::fromUtf8(g_app_info_get_id(app));
    found.name = QString::fromUtf8(g_app_info_get_display_name(app));
    if (GIcon* icon = g_app_info_get_icon(app)) {
        gchar* text = g_icon_to_string(icon);
        found.icon = QString::fromUtf8(text);
        g_free(text);
    }
    if (G_IS_DESKTOP_APP_INFO(app))
        found.path = NativePath::decode(g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(app)));
    return found;
}

QList<Application> describeAll(GList* apps, bool shownOnly) {
    QList<Application> list;
    for (GList* item = apps; item; item = item->next) {
        auto* app = static_cast<GAppInfo*>(item->data);
        if (!shownOnly || g_app_info_should_show(app)) list << describe(app);
    }
    g_list_free_full(apps, g_object_unref);
    return list;
}

QString failure(GError* error) {
    const QString text = error ? QString::fromUtf8(error->message) : QString();
    if (error) g_error_free(error);
    return text;
}
} // namespace

// The freedesktop rules (mimeapps.list in every data and config folder, then the desktop files'
// own claims) as GIO applies them, so the answer is the one the desktop itself gives.
QString DefaultApplications::nameFor(const QString& path, const QString& typeName) {
    Q_UNUSED(path);
    return defaultFor(typeName).name;
}

QList<Application> DefaultApplications::forType(const QString& typeName) {
    if (typeName.isEmpty()) return {};
    return describeAll(g_app_info_get_all_for_type(typeName.toUtf8().constData()), false);
}

Application DefaultApplications::defaultFor(const QString& typeName) {
    if (typeName.isEmpty()) return {};
    GAppInfo* app = g_app_info_get_default_for_type(typeName.toUtf8().constData(), FALSE);
    const Application found = describe(app);
    if (app) g_object_unref(app);
    return found;
}

QList<Application> DefaultApplications::all() {
    QList<Application> list = describeAll(g_app_info_get_all(), true);
    std::sort(list.begin(), list.end(), [](const Application& a, const Application& b) {
        const int order = a.name.localeAwareCompare(b.name);
        return order != 0 ? order < 0 : a.id < b.id;
    });
    return list;
}

bool DefaultApplications::launch(const QString& id, const QStringList& paths, QString& error) {
    GDesktopAppInfo* app = g_desktop_app_info_new(id.toUtf8().constData());
    if (!app) {
        error = QStringLiteral("The application is no longer installed.");
        return false;
    }
    GList* uris = nullptr;
    for (const QString& path : paths)
        uris = g_list_append(uris, g_filename_to_uri(NativePath::encode(path).constData(), nullptr, nullptr));
    GError* problem = nullptr;
    GAppLaunchContext* context = g_app_launch_context_new();
    const bool started = g_app_info_launch_uris(G_APP_INFO(app), uris, context, &problem);
    g_object_unref(context);
    g_list_free_full(uris, g_free);
    g_object_unref(app);
    if (!started) error = failure(problem);
    return started;
}

// GSettings only when the desktop installed that schema: asking for a missing one aborts the process.
bool DefaultApplications::openTerminal(const QString& folder, QString& error) {
    QByteArray program;
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    const char* schemaName = "org.gnome.desktop.default-applications.terminal";
    if (GSettingsSchema* schema =
            source ? g_settings_schema_source_lookup(source, schemaName, TRUE) : nullptr) {
        GSettings* settings = g_settings_new(schemaName);
        gchar* exec = g_settings_get_string(settings, "exec");
        gchar* found = exec && *exec ? g_find_program_in_path(exec) : nullptr;
        program = found;
        g_free(found);
        g_free(exec);
        g_object_unref(settings);
        g_settings_schema_unref(schema);
    }
    if (program.isEmpty()) {
        gchar* fallback = g_find_program_in_path("x-terminal-emulator");
        program = fallback;
        g_free(fallback);
    }
    if (program.isEmpty()) {
        error = QStringLiteral("No terminal is installed.");
        return false;
    }
    char* argv[] = {program.data(), nullptr};
    GError* problem = nullptr;
    const QByteArray where = NativePath::encode(folder);
    if (g_spawn_async(where.constData(), argv, nullptr, G_SPAWN_DEFAULT, nullptr, nullptr, nullptr, &problem))
        return true;
    error = failure(problem);
    return false;
}

} // namespace orvane
