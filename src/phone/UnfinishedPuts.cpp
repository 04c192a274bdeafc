#include "phone/UnfinishedPuts.h"
#include "phone/PhoneProtocol.h"

#include <sys/stat.h>

namespace orvane {

void UnfinishedPuts::sending(const QStringList& put) {
    files.clear();
    for (qsizetype i = 3; i < put.size(); ++i) {
        struct stat status;
        if (::stat(put[i].toUtf8().constData(), &status) == 0)
            files.append({put[1], put[2], put[i].section(u'/', -1), qint64(status.st_size)});
    }
}

QStringList UnfinishedPuts::clearUp(const Ask& ask) {
    QStringList removed;
    while (!files.isEmpty()) {
        const File file = files.constLast();
        PhoneReply listing;
        if (!ask({file.storage, file.parent}, listing)) return removed;
        for (const PhoneItem& item : listing.items.value_or(QList<PhoneItem>())) {
            if (item.name != file.name || item.folder || qint64(item.size) >= file.size) continue;
            PhoneReply deleted;
            if (!ask(PhoneProtocol::remove(item.id), deleted)) return removed;
            if (!deleted.error) removed << file.name;
        }
        files.removeLast();
    }
    return removed;
}

QString UnfinishedPuts::notice(const QStringList& removed) {
    return QStringLiteral("The connection to the phone was lost while sending %1, so the incomplete copy "
                          "was removed from the phone. Send it again.")
        .arg(removed.join(QStringLiteral(", ")));
}

} // namespace orvane
