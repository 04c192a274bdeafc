#pragma once

#include <QObject>
#include <QString>

class QLabel;
class QPushButton;
class QWidget;

namespace orvane {

class BrowserWindow;
class FolderPortal;

// What the file area shows instead of the files when a folder may not be read: why, and the ways out
// (up, the folder's Properties, the desktop's own chooser where its portal runs, and trying again).
// Any other read error keeps the window's own "Cannot read this folder".
class FolderAccessPanel : public QObject {
    Q_OBJECT
public:
    explicit FolderAccessPanel(BrowserWindow& window);

    // The folder the panel speaks of; empty while none is blocked.
    QString blockedFolder() const { return blocked; }
    QWidget* panel() const { return frame; }

private:
    void build();
    void update();
    void requestAccess();
    void chosen(const QString& path);

    BrowserWindow& w;
    QWidget* frame = nullptr;
    QLabel* title = nullptr;
    QLabel* message = nullptr;
    QPushButton* allow = nullptr;
    FolderPortal* portal;
    QString blocked;
};

} // namespace orvane
