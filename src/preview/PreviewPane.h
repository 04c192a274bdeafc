#pragma once

#include "core/Entry.h"
#include "preview/PreviewSelection.h"

#include <QWidget>
#include <vector>

class QLabel;

namespace orvane {

class PreviewLoader;
class PreviewRenderers;
class PreviewView;

// The right-hand pane that shows the selected file inside the window, in place of the details pane.
class PreviewPane : public QWidget {
    Q_OBJECT
public:
    explicit PreviewPane(QWidget* parent = nullptr);

    // Shows a selection; the file's inside follows when it has been read.
    void update(const std::vector<Entry>& selected);
    // The start card, and nothing loading.
    void clear();
    // Where the players add their renderer.
    PreviewRenderers& renderers();

    const std::vector<Entry>& displayed() const { return shown.files; }
    PreviewView* view() const { return host; }
    QString fileName() const;
    QString fileMetadata() const;

signals:
    void closeRequested();
    // A file's preview arrived (tests and screenshots wait for it).
    void previewShown();

private:
    PreviewSelection shown;
    bool hasContent = false; // what `shown` stands for is on screen
    PreviewLoader* loader;
    PreviewView* host;
    QLabel* nameLabel;
    QLabel* metadataLabel;
};

} // namespace orvane
