#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <QUrl>

class QMimeData;

namespace orvane {

// text/uri-list with each local path percent-encoded from its exact bytes, both ways. Qt's own URL
// list would turn a name that is not UTF-8 into another name, which may be another file.
namespace UriList {

inline const QString format = QStringLiteral("text/uri-list");

QByteArrayList lines(const QList<QUrl>& localFiles);
QByteArray encode(const QList<QUrl>& localFiles);
// The local files among the lines; comments, blanks and other schemes are left out.
QList<QUrl> decode(const QByteArrayList& lines);
void write(QMimeData& data, const QList<QUrl>& localFiles);
QList<QUrl> read(const QMimeData& data);

} // namespace UriList

} // namespace orvane
