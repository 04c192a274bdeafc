#pragma once

#include <QPointer>
#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;

namespace orvane {

class AppUpdates;
class LiveStatusLabel;
class Settings;

// The settings window, one for the whole program: the playback card and the update card.
class CustomizationWindow : public QWidget {
    Q_OBJECT
public:
    // Shows the one window, made at the first call, in front.
    static CustomizationWindow* present(AppUpdates& updates, Settings& settings, QWidget* owner);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    CustomizationWindow(AppUpdates& updates, Settings& settings, QWidget* owner);
    QWidget* buildTitleRow();
    QWidget* playbackCard();
    QWidget* updatesCard();
    void refresh();

    AppUpdates& updates;
    Settings& settings;
    QCheckBox* wave = nullptr;
    QCheckBox* automatic = nullptr;
    QPushButton* check = nullptr;
    QPushButton* notes = nullptr;
    LiveStatusLabel* status = nullptr;
    QLabel* lastCheck = nullptr;
    static QPointer<CustomizationWindow> shown;
};

} // namespace orvane
