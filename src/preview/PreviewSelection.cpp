#include "preview/PreviewSelection.h"

#include "core/EntryText.h"
#include "platform/NativePath.h"
#include "views/FileIcons.h"

#include <unistd.h>

namespace orvane {

PreviewSelection PreviewSelection::of(const std::vector<Entry>& selected) {
    PreviewSelection s;
    for (const Entry& e : selected)
        if (!e.isPhone() && !e.location.isEmpty()) s.files.push_back(e);
    if (s.files.empty()) {
        s.card = PreviewCard::start();
        return s;
    }
    if (s.files.size() > 1) {
        s.card = PreviewCard::several(int(s.files.size()));
        return s;
    }
    const Entry& file = s.files.front();
    s.fileName = folderName(file.url());
    s.fileToolTip = file.location;
    const QString kind = file.kind.isEmpty() ? QStringLiteral("File") : file.kind;
    if (file.directory) {
        s.metadata = kind;
        s.card = PreviewCard::folder(FileIcons::shared().icon(file));
        return s;
    }
    s.metadata = kind + QStringLiteral(" · ") + byteCountText(file.size);
    if (::access(NativePath::encode(file.location).constData(), R_OK) != 0)
        s.card = PreviewCard::unavailable();
    return s;
}

PreviewCard PreviewSelection::summary() const {
    if (files.size() != 1) return PreviewCard::start();
    return PreviewCard::summary(files.front().kind, FileIcons::shared().icon(files.front()));
}

} // namespace orvane
