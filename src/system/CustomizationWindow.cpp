#include "system/CustomizationWindow.h"

#include "core/Settings.h"
#include "kit/AuxiliaryStyle.h"
#include "kit/LiveStatusLabel.h"
#include "kit/Palette.h"
#include "system/AppUpdates.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvane {

QPointer<CustomizationWindow> CustomizationWindow::shown;

namespace {

QLabel* label(const QString& text, const QColor& color, int size, QWidget* parent, bool bold = false) {
    auto* item = new QLabel(text, parent);
    QFont font = item->font();
    font.setPointSize(size);
    font.setBold(bold);
    item->setFont(font);
    item->setWordWrap(true);
    item->setStyleSheet(QStringLiteral("color: %1;").arg(color.name(QColor::HexArgb)));
    return item;
}

// A rounded panel with its heading; what it holds goes into the returned layout.
QVBoxLayout* card(const QString& heading, QWidget* parent, QWidget** made) {
    auto* panel = new QWidget(parent);
    panel->setObjectName(QStringLiteral("settingsCard"));
    panel->setAttribute(Qt::WA_StyledBackground);
    panel->setStyleSheet(
        QStringLiteral("#settingsCard { background: rgba(255, 255, 255, 12); border-radius: 10px; }"));
    panel->setAccessibleName(heading);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(20, 16, 20, 18);
    layout->setSpacing(8);
    layout->addWidget(label(heading, Palette::ink(), 13, panel, true));
    *made = panel;
    return layout;
}

} // namespace

CustomizationWindow* CustomizationWindow::present(AppUpdates& updates, Settings& settings, QWidget* owner) {
    if (!shown) shown = new CustomizationWindow(updates, settings, owner);
    updates.start();
    shown->refresh();
    shown->wave->setChecked(settings.showsWaveform());
    shown->show();
    shown->raise();
    shown->activateWindow();
    return shown;
}

CustomizationWindow::CustomizationWindow(AppUpdates& updates, Settings& settings, QWidget* owner)
    : AuxiliaryWindow(owner, QStringLiteral("Orvane Settings"), QStringLiteral("Orvane Settings")),
      updates(updates), settings(settings) {
    resize(610, 540);
    auto* column = new QVBoxLayout;
    column->setContentsMargins(24, 16, 24, 24);
    column->setSpacing(16);
    column->addWidget(playbackCard());
    column->addWidget(updatesCard());
    column->addStretch(1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->addWidget(titleRow(windowTitle()));
    layout->addLayout(column, 1);
    connect(&updates, &AppUpdates::changed, this, &CustomizationWindow::refresh);
    connect(&settings, &Settings::waveformChanged, this, [this](bool shows) { wave->setChecked(shows); });
    AuxiliaryStyle::centreOn(this, owner);
}

QWidget* CustomizationWindow::playbackCard() {
    QWidget* panel = nullptr;
    QVBoxLayout* layout = card(QStringLiteral("Playback"), this, &panel);
    wave = new QCheckBox(QStringLiteral("Show audio waveform"), panel);
    QLabel* note =
        label(QStringLiteral("Display the waveform in the audio player."), Palette::muted(), 11, panel);
    wave->setAccessibleDescription(note->text());
    connect(wave, &QCheckBox::toggled, this, [this](bool on) { settings.setShowsWaveform(on); });
    layout->addWidget(wave);
    layout->addWidget(note);
    return panel;
}

QWidget* CustomizationWindow::updatesCard() {
    QWidget* panel = nullptr;
    QVBoxLayout* layout = card(QStringLiteral("Software updates"), this, &panel);
    layout->addWidget(
        label(QStringLiteral("Orvane ") + QCoreApplication::applicationVersion(), Palette::ink(), 12, panel));
    if (updates.packaged()) {
        layout->addWidget(
            label(QStringLiteral("Orvane was installed by the system’s package manager; its updates come "
                                 "from there."),
                  Palette::muted(), 11, panel));
        return panel;
    }
    automatic = new QCheckBox(QStringLiteral("Automatically check for updates"), panel);
    QLabel* note = label(QStringLiteral("Check daily. You choose when to install an update."),
                         Palette::muted(), 11, panel);
    automatic->setAccessibleDescription(note->text());
    connect(automatic, &QCheckBox::clicked, this, [this](bool on) { updates.setAutomaticallyChecks(on); });
    check = new QPushButton(QStringLiteral("Check for Updates…"), panel);
    notes = new QPushButton(QStringLiteral("Release Notes"), panel);
    connect(check, &QPushButton::clicked, &updates, &AppUpdates::checkForUpdates);
    connect(notes, &QPushButton::clicked, &updates, &AppUpdates::openReleaseNotes);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(check);
    buttons->addWidget(notes);
    buttons->addStretch(1);
    status = new LiveStatusLabel(QString(), panel);
    lastCheck = label(QString(), Palette::muted(), 11, panel);
    for (QWidget* item : {static_cast<QWidget*>(automatic), static_cast<QWidget*>(note)})
        layout->addWidget(item);
    layout->addLayout(buttons);
    layout->addWidget(status);
    layout->addWidget(lastCheck);
    return panel;
}

void CustomizationWindow::refresh() {
    if (updates.packaged()) return;
    automatic->setEnabled(updates.configured());
    automatic->setChecked(updates.automaticallyChecks());
    check->setEnabled(updates.canCheck());
    const QString line = updates.configured() || !updates.status().isEmpty()
                             ? updates.status()
                             : QStringLiteral("The update server is not configured.");
    if (line != status->text()) status->announce(line);
    const QDateTime last = updates.lastChecked();
    lastCheck->setText(last.isValid()
                           ? QStringLiteral("Last checked: ") + QLocale().toString(last, QLocale::LongFormat)
                           : QStringLiteral("No checks yet"));
}

} // namespace orvane
