#include "system/DefaultBrowserWindow.h"

#include "kit/AuxiliaryStyle.h"
#include "kit/BusySpinner.h"
#include "kit/Palette.h"
#include "system/DefaultBrowserSettings.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvane {

namespace {
QLabel* text(const QString& words, QWidget* parent, int size = 13) {
    auto* label = new QLabel(words, parent);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    QFont font = label->font();
    font.setPixelSize(size);
    label->setFont(font);
    return label;
}

// A label's own style wins over the window's, whatever the window's rule says.
void colour(QLabel* label, const QColor& colour) {
    label->setStyleSheet(QStringLiteral("color: %1;").arg(colour.name()));
}
} // namespace

DefaultBrowserWindow::DefaultBrowserWindow(DefaultBrowserSettings& settings, QWidget* parent)
    : QWidget(parent, Qt::Window), settings(settings) {
    setWindowTitle(QStringLiteral("File browser integration"));
    resize(590, 370);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(28, 24, 28, 24);
    column->setSpacing(12);
    QLabel* heading = text(QStringLiteral("Default folder browser"), this, 22);
    heading->setAccessibleName(heading->text());
    column->addWidget(heading);
    column->addWidget(
        text(QStringLiteral("Choose the app for opening folders. Programs that show a file in its "
                            "folder ask the same app."),
             this));
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(10);
    folder = row(QStringLiteral("Opening folders:"), grid, 0);
    viewer = row(QStringLiteral("Show in folder:"), grid, 1);
    column->addLayout(grid);
    result = text(QString(), this);
    result->setAccessibleName(QStringLiteral("Result"));
    column->addWidget(result);
    auto* buttons = new QHBoxLayout;
    use = new QPushButton(QStringLiteral("Use Orvane for folders"), this);
    restore = new QPushButton(QStringLiteral("Restore previous file manager"), this);
    spinner = new BusySpinner(this);
    spinner->setAccessibleName(QStringLiteral("Waiting for the desktop"));
    buttons->addWidget(use);
    buttons->addWidget(restore);
    buttons->addWidget(spinner);
    buttons->addStretch();
    column->addLayout(buttons);
    QLabel* note =
        text(QStringLiteral("The desktop keeps this choice in mimeapps.list in your settings folder; if "
                            "the change cannot be made, the current default stays. Apps that start a "
                            "particular file manager by name keep doing so. You can restore the previous "
                            "file manager here at any time."),
             this, 12);
    colour(note, Palette::muted());
    column->addWidget(note);
    column->addStretch();
    AuxiliaryStyle::apply(this);
    // A window of its own that stays open, so it keeps the frame to move and close it by.
    setWindowFlag(Qt::FramelessWindowHint, false);
    setStyleSheet(styleSheet() +
                  QStringLiteral("\n#auxiliaryWindow QPushButton:disabled { color: rgb(120, 120, 128); "
                                 "background: transparent; }"));
    connect(use, &QPushButton::clicked, this, [this] { run(true); });
    connect(restore, &QPushButton::clicked, this, [this] { run(false); });
    connect(&settings, &DefaultBrowserSettings::stateChanged, this, &DefaultBrowserWindow::refresh);
    // A change made elsewhere shows when the person comes back.
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive && isVisible()) refresh();
    });
    refresh();
}

// The row's title names the value through the buddy; the value keeps its own text.
QLabel* DefaultBrowserWindow::row(const QString& title, QGridLayout* grid, int line) {
    QLabel* label = text(title, this);
    colour(label, Palette::muted());
    QLabel* value = text(QString(), this);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setBuddy(value);
    grid->addWidget(label, line, 0, Qt::AlignTop);
    grid->addWidget(value, line, 1);
    grid->setColumnStretch(1, 1);
    return value;
}

void DefaultBrowserWindow::present() {
    if (!isVisible())
        if (const QWidget* owner = QApplication::activeWindow()) AuxiliaryStyle::centreOn(this, owner);
    refresh();
    show();
    raise();
    activateWindow();
}

void DefaultBrowserWindow::refresh() {
    const DefaultBrowserSettings::Status now = settings.status();
    folder->setText(now.folderApplication ? DefaultBrowserSettings::applicationName(*now.folderApplication)
                                          : QStringLiteral("Unavailable"));
    viewer->setText(now.isOrvaneFileViewer() ? QStringLiteral("Orvane")
                                             : QStringLiteral("Whichever file manager started first"));
    const bool changing = settings.isChanging();
    use->setEnabled(!changing && !now.isOrvaneDefault());
    restore->setEnabled(!changing && !now.isPreviousDefault());
    if (changing)
        spinner->start();
    else
        spinner->stop();
}

void DefaultBrowserWindow::run(bool makeDefault) {
    result->setText(QStringLiteral("Waiting for the desktop…"));
    colour(result, Palette::muted());
    auto done = [this](const DefaultBrowserSettings::Result& outcome) {
        if (outcome.ok()) {
            result->setText(
                QStringLiteral("Opening folders uses %1. Reopen other apps if they still use an older "
                               "setting.")
                    .arg(DefaultBrowserSettings::applicationName(
                        outcome.status->folderApplication.value_or(QString()))));
            colour(result, QColor(0x4c, 0xc3, 0x6a));
        } else {
            result->setText(outcome.error);
            colour(result, QColor(0xff, 0x6b, 0x6b));
        }
        refresh();
    };
    if (makeDefault)
        settings.makeOrvaneDefault(done);
    else
        settings.restorePreviousDefault(done);
}

QString DefaultBrowserWindow::folderText() const {
    return folder->text();
}

QString DefaultBrowserWindow::viewerText() const {
    return viewer->text();
}

QString DefaultBrowserWindow::resultText() const {
    return result->text();
}

} // namespace orvane
