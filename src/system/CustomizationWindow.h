#pragma once

#include "chrome/AuxiliaryWindow.h"

#include <QPointer>

class QCheckBox;
class QLabel;
class QPushButton;

namespace orvane {

class AppUpdates;
class LiveStatusLabel;
class Settings;

// The settings window, one for the whole program: the playback card and the update card.
class CustomizationWindow : public AuxiliaryWindow {
    Q_OBJECT
public:
    // Shows the one window, made at the first call, in front.
    static CustomizationWindow* present(AppUpdates& updates, Settings& settings, QWidget* owner);

private:
    CustomizationWindow(AppUpdates& updates, Settings& settings, QWidget* owner);
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
