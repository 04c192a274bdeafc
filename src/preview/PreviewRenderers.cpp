#include "preview/PreviewRenderers.h"

#include "platform/NativePath.h"
#include "preview/PdfPreview.h"
#include "preview/PicturePreview.h"
#include "preview/PreviewRenderer.h"
#include "preview/TextPreview.h"

#include <QFile>
#include <QMimeDatabase>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {
// A Qt file class on the path would name a lookalike when a byte is not UTF-8; the descriptor
// names this one. Only regular files: a FIFO would hang the worker.
bool openExact(const QString& path, QFile& file) {
    const int fd = ::open(NativePath::encode(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) return false;
    struct stat facts {};
    if (::fstat(fd, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        ::close(fd);
        return false;
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    return file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
}
} // namespace

PreviewRenderers::PreviewRenderers()
    : list{std::make_shared<PicturePreview>(), std::make_shared<PdfPreview>(),
           std::make_shared<TextPreview>()} {}

void PreviewRenderers::prepend(std::shared_ptr<const PreviewRenderer> renderer) {
    list.insert(list.begin(), std::move(renderer));
}

PreviewContent PreviewRenderers::load(const QString& path, QSize bound) const {
    QFile file;
    if (!openExact(path, file)) return {};
    const QString name = path.section(u'/', -1);
    const QMimeType type = QMimeDatabase().mimeTypeForFileNameAndData(name, &file);
    for (const auto& renderer : list) {
        if (!renderer->accepts(type)) continue;
        file.seek(0);
        PreviewContent content = renderer->load({path, type, &file, bound});
        if (!content.isNull()) return content;
    }
    PreviewContent none;
    none.path = path;
    none.card = PreviewCard{};
    return none;
}

} // namespace orvane
