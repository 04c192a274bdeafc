#pragma once

#include <QWidget>

class QGridLayout;
class QLabel;
class QPushButton;

namespace orvane {

class BusySpinner;
class DefaultBrowserSettings;

// The small window that makes Orvane the folder browser and goes back: what the desktop uses now,
// the two buttons, and the outcome of the last change in words.
class DefaultBrowserWindow : public QWidget {
    Q_OBJECT
public:
    explicit DefaultBrowserWindow(DefaultBrowserSettings& settings, QWidget* parent = nullptr);

    // Builds nothing twice: the one window, refreshed and brought forward.
    void present();
    void refresh();

    QString folderText() const;
    QString viewerText() const;
    QString resultText() const;
    QPushButton* useButton() const { return use; }
    QPushButton* restoreButton() const { return restore; }

private:
    QLabel* row(const QString& title, QGridLayout* grid, int line);
    void run(bool makeDefault);

    DefaultBrowserSettings& settings;
    QLabel* folder;
    QLabel* viewer;
    QLabel* result;
    QPushButton* use;
    QPushButton* restore;
    BusySpinner* spinner;
};

} // namespace orvane
