#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <utility>

// What the program and mtp-bridge say to each other, shared by both sides. A request is one line, a
// JSON array of strings; the bridge answers with any number of progress lines ({"progress": 0.5})
// and then one reply object, which carries "error" when the request failed. Handles and storage
// numbers travel as decimal strings.
namespace orvane::PhoneProtocol {

// The parent of what lies at the top of a storage.
inline constexpr uint32_t rootHandle = 0xFFFFFFFFu;

namespace Verb {
// Neither is a word on the line: an empty request asks for the storages, two numbers for a folder.
// They name the requests in the bridge's fault plan.
inline constexpr char storages[] = "storages";
inline constexpr char list[] = "list";
inline constexpr char scan[] = "scan";
inline constexpr char get[] = "get";
inline constexpr char put[] = "put";
inline constexpr char mkdir[] = "mkdir";
inline constexpr char rename[] = "rename";
inline constexpr char move[] = "move";
inline constexpr char remove[] = "delete";
inline constexpr char info[] = "info";
inline constexpr char thumb[] = "thumb";
} // namespace Verb

// The keys of a reply and of each of its items.
namespace Field {
inline constexpr char items[] = "items";
inline constexpr char error[] = "error";
inline constexpr char progress[] = "progress";
inline constexpr char id[] = "id";
inline constexpr char storage[] = "storage";
inline constexpr char name[] = "name";
inline constexpr char folder[] = "folder";
inline constexpr char size[] = "size";
inline constexpr char modified[] = "modified";
inline constexpr char created[] = "created";
inline constexpr char width[] = "width";
inline constexpr char height[] = "height";
} // namespace Field

namespace Error {
inline constexpr char badRequest[] = "Bad request.";
} // namespace Error

inline QString number(uint32_t value) {
    return QString::number(value);
}

// One builder a request, so that each verb is spelled here only.
inline QStringList storages() {
    return {};
}
inline QStringList list(uint32_t storage, uint32_t parent) {
    return {number(storage), number(parent)};
}
inline QStringList scan() {
    return {QLatin1String(Verb::scan)};
}
// Each pair is a handle and the local path it is written to.
inline QStringList get(const QList<std::pair<uint32_t, QString>>& files) {
    QStringList request{QLatin1String(Verb::get)};
    for (const auto& [id, path] : files)
        request << number(id) << path;
    return request;
}
inline QStringList put(uint32_t storage, uint32_t parent, const QStringList& paths) {
    return QStringList{QLatin1String(Verb::put), number(storage), number(parent)} + paths;
}
inline QStringList mkdir(uint32_t storage, uint32_t parent, const QString& name) {
    return {QLatin1String(Verb::mkdir), number(storage), number(parent), name};
}
inline QStringList rename(uint32_t id, const QString& name) {
    return {QLatin1String(Verb::rename), number(id), name};
}
inline QStringList move(uint32_t id, uint32_t storage, uint32_t parent) {
    return {QLatin1String(Verb::move), number(id), number(storage), number(parent)};
}
inline QStringList remove(uint32_t id) {
    return {QLatin1String(Verb::remove), number(id)};
}
inline QStringList info(uint32_t id) {
    return {QLatin1String(Verb::info), number(id)};
}
inline QStringList thumb(uint32_t id, const QString& path) {
    return {QLatin1String(Verb::thumb), number(id), path};
}

// Whether a request is a transfer, which may run long but must keep reporting progress.
inline bool isTransfer(const QStringList& request) {
    const QString verb = request.value(0);
    return verb == QLatin1String(Verb::get) || verb == QLatin1String(Verb::put);
}

} // namespace orvane::PhoneProtocol
