#include "properties/PropertiesWindow.h"

#include "core/Entry.h"
#include "kit/BusySpinner.h"
#include "kit/LiveStatusLabel.h"
#include "kit/Palette.h"
#include "kit/Symbols.h"
#include "platform/PhysicalKeys.h"
#include "platform/Platform.h"
#include "properties/PropertiesReader.h"
#include "views/FileIcons.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

namespace orvane {

struct PropertiesWindow::Row {
    QString label; // empty: a divider
    QString key;
    QString first;
};

namespace {

const QString calculating = QStringLiteral("Calculating…");

QFont sized(const QFont& base, int pixels, QFont::Weight weight = QFont::Normal) {
    QFont font = base;
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

template <typename Label = QLabel>
Label* textLabel(const QString& text, const QColor& color, int pixels, QWidget* parent) {
    auto* label = new Label(text, parent);
    label->setFont(sized(label->font(), pixels));
    QPalette colors = label->palette();
    colors.setColor(QPalette::WindowText, color);
    label->setPalette(colors);
    return label;
}

QFrame* divider(QWidget* parent) {
    auto* line = new QFrame(parent);
    line->setObjectName(QStringLiteral("propertiesDivider"));
    line->setFixedHeight(1);
    return line;
}

QString windowStyle() {
    return QStringLiteral(R"(
#propertiesPanel { background: rgba(255, 255, 255, 11); border: 1px solid rgba(255, 255, 255, 19);
  border-radius: 10px; }
#propertiesPanel QScrollArea, #propertiesPage { background: transparent; border: none; }
#propertiesDivider { background: rgba(255, 255, 255, 20); }
#propertiesTabs QTabBar::tab { min-width: 98px; max-width: 98px; padding: 4px 0; margin-right: 2px;
  border-radius: 6px; border: 1px solid transparent; background: rgba(255, 255, 255, 12);
  color: rgb(240, 240, 240); }
#propertiesTabs QTabBar::tab:selected { background: rgba(166, 161, 255, 70); }
#propertiesTabs QTabBar:focus QTabBar::tab:selected { border: 1px solid rgba(166, 161, 255, 160); }
QPushButton#propertiesClose { background: rgba(166, 161, 255, 60); color: rgb(240, 240, 240);
  border: 1px solid rgba(166, 161, 255, 120); border-radius: 6px; padding: 5px 18px; }
QPushButton#propertiesClose:hover { background: rgba(166, 161, 255, 90); }
)");
}

} // namespace

PropertiesWindow::PropertiesWindow(const QList<QUrl>& urls, QWidget* parent)
    : QWidget(parent, Qt::Window), selection(urls),
      reading(std::make_unique<PropertiesReader>(selection.urls())) {
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(QStringLiteral("propertiesWindow"));
    setWindowTitle(selection.windowTitle());
    setAccessibleName(selection.windowTitle());
    setStyleSheet(windowStyle());
    resize(550, 680);
    setMinimumWidth(490);
    buildInterface();
    connect(reading.get(), &PropertiesReader::factsRead, this, &PropertiesWindow::applyFacts);
    connect(reading.get(), &PropertiesReader::sizeRead, this, &PropertiesWindow::applySize);
    qApp->installEventFilter(this);
    const QRect around = parent ? parent->window()->frameGeometry() : screen()->availableGeometry();
    move(around.center() - rect().center());
}

PropertiesWindow::~PropertiesWindow() {
    if (qApp) qApp->removeEventFilter(this);
    reading.reset();
}

void PropertiesWindow::buildInterface() {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(20, 18, 20, 16);
    column->setSpacing(14);
    column->addWidget(buildHeader());
    column->addWidget(buildTabs());
    column->addWidget(buildPanel(), 1);
    column->addWidget(buildFoot());
}

QWidget* PropertiesWindow::buildHeader() {
    auto* header = new QWidget(this);
    auto* line = new QHBoxLayout(header);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(12);
    icon = new QLabel(header);
    icon->setFixedSize(48, 48);
    const bool several = selection.urls().size() > 1;
    const QIcon start = several ? symbolIcon(QStringLiteral("doc.on.doc")) : FileIcons::shared().document();
    icon->setPixmap(start.pixmap(48, 48));
    icon->setAccessibleName(several ? QStringLiteral("Multiple items") : selection.headerText());
    title = textLabel(QString(), Palette::ink(), 17, header);
    title->setFont(sized(title->font(), 17, QFont::DemiBold));
    title->setToolTip(selection.pathsText());
    title->setAccessibleName(selection.headerText());
    title->setMinimumWidth(1);
    fitTitle();
    line->addWidget(icon);
    line->addWidget(title, 1);
    return header;
}

QWidget* PropertiesWindow::buildTabs() {
    auto* strip = new QWidget(this);
    strip->setObjectName(QStringLiteral("propertiesTabs"));
    auto* line = new QHBoxLayout(strip);
    line->setContentsMargins(0, 0, 0, 0);
    // A tab list, so a reader says "General, page tab, 1 of 2" and the arrows move between pages.
    tabs = new QTabBar(strip);
    tabs->setAccessibleName(QStringLiteral("Pages"));
    tabs->setDrawBase(false);
    tabs->setExpanding(false);
    tabs->setFocusPolicy(Qt::StrongFocus);
    tabs->addTab(QStringLiteral("General"));
    tabs->addTab(QStringLiteral("Details"));
    line->addWidget(tabs);
    line->addStretch(1);
    connect(tabs, &QTabBar::currentChanged, this, [this](int page) { pages->setCurrentIndex(page); });
    return strip;
}

QWidget* PropertiesWindow::buildPanel() {
    static const QString none;
    const std::vector<Row> general = {
        {QStringLiteral("Type"), QStringLiteral("type"), none},
        {QStringLiteral("Opens with"), QStringLiteral("opens"), none},
        {},
        {QStringLiteral("Location"), QStringLiteral("location"), none},
        {QStringLiteral("Size"), QStringLiteral("size"), calculating},
        {QStringLiteral("Size on disk"), QStringLiteral("allocated"), calculating},
        {QStringLiteral("Contains"), QStringLiteral("contains"), QStringLiteral("Counting…")},
        {},
        {QStringLiteral("Created"), QStringLiteral("created"), none},
        {QStringLiteral("Modified"), QStringLiteral("modified"), none},
        {QStringLiteral("Accessed"), QStringLiteral("accessed"), none},
        {},
        {QStringLiteral("Access"), QStringLiteral("access"), none},
        {QStringLiteral("Attributes"), QStringLiteral("attributes"), none},
    };
    const std::vector<Row> details = {
        {QStringLiteral("Full path"), QStringLiteral("path"), selection.pathsText()},
        {QStringLiteral("Owner"), QStringLiteral("owner"), none},
        {QStringLiteral("Group"), QStringLiteral("group"), none},
        {QStringLiteral("Permissions"), QStringLiteral("permissions"), none},
        {QStringLiteral("Link target"), QStringLiteral("target"), none},
        {},
    };
    auto* panel = new QFrame(this);
    panel->setObjectName(QStringLiteral("propertiesPanel"));
    auto* box = new QVBoxLayout(panel);
    box->setContentsMargins(1, 1, 1, 1);
    pages = new QStackedWidget(panel);
    pages->addWidget(buildPage(general, nullptr));
    QLabel* note =
        textLabel(Platform::instance().word(PlatformWord::PropertiesNote), Palette::muted(), 11, panel);
    note->setWordWrap(true);
    pages->addWidget(buildPage(details, note));
    box->addWidget(pages);
    return panel;
}

QScrollArea* PropertiesWindow::buildPage(const std::vector<Row>& rows, QWidget* note) {
    auto* scroll = new QScrollArea(pages);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* document = new QWidget(scroll);
    document->setObjectName(QStringLiteral("propertiesPage"));
    auto* grid = new QGridLayout(document);
    grid->setContentsMargins(16, 14, 16, 14);
    grid->setHorizontalSpacing(14);
    grid->setVerticalSpacing(9);
    grid->setColumnMinimumWidth(0, 105);
    grid->setColumnStretch(1, 1);
    int line = 0;
    for (const Row& row : rows)
        addRow(grid, line++, row);
    if (note) grid->addWidget(note, line++, 0, 1, 2);
    grid->setRowStretch(line, 1);
    scroll->setWidget(document);
    return scroll;
}

void PropertiesWindow::addRow(QGridLayout* grid, int line, const Row& row) {
    QWidget* document = grid->parentWidget();
    if (row.label.isEmpty()) {
        grid->addWidget(divider(document), line, 0, 1, 2);
        return;
    }
    QLabel* label = textLabel(row.label, Palette::muted(), 12, document);
    label->setFixedWidth(105);
    label->setAlignment(Qt::AlignRight | Qt::AlignTop);
    label->setContentsMargins(0, 1, 0, 0); // on the value's baseline, whose text is a size larger
    QLabel* field = textLabel(row.first, Palette::ink(), 13, document);
    field->setWordWrap(true);
    field->setMinimumHeight(19);
    field->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    field->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    field->setTextFormat(Qt::PlainText);
    field->setToolTip(row.first);
    // The row's title labels the value through the buddy; the value is read as its own text.
    label->setBuddy(field);
    grid->addWidget(label, line, 0, Qt::AlignTop);
    grid->addWidget(field, line, 1);
    fields.insert(row.key, field);
}

QWidget* PropertiesWindow::buildFoot() {
    auto* foot = new QWidget(this);
    auto* line = new QHBoxLayout(foot);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(8);
    progress = new BusySpinner(foot);
    status =
        textLabel<LiveStatusLabel>(QStringLiteral("Calculating folder size…"), Palette::muted(), 12, foot);
    status->setAccessibleDescription(QStringLiteral("Scan status"));
    closeButton = new QPushButton(QStringLiteral("Close"), foot);
    closeButton->setObjectName(QStringLiteral("propertiesClose"));
    closeButton->setAccessibleName(QStringLiteral("Close"));
    closeButton->setDefault(true);
    connect(closeButton, &QPushButton::clicked, this, &QWidget::close);
    line->addWidget(progress);
    line->addWidget(status, 1);
    line->addWidget(closeButton);
    return foot;
}

void PropertiesWindow::beginReading() {
    if (windowClosed) return;
    progress->start();
    reading->start();
}

QString PropertiesWindow::value(const QString& key) const {
    const QLabel* field = fields.value(key);
    return field ? field->text() : QString();
}

QString PropertiesWindow::scanStatus() const {
    return status->text();
}

bool PropertiesWindow::isSpinning() const {
    return progress->isSpinning();
}

int PropertiesWindow::currentPage() const {
    return pages->currentIndex();
}

void PropertiesWindow::set(const QString& key, const QString& text) {
    QLabel* field = fields.value(key);
    if (!field) return;
    field->setText(text);
    field->setToolTip(text);
}

void PropertiesWindow::setStatus(const QString& text) {
    if (status->text() == text) return;
    status->announce(text);
    emit scanStatusChanged(text);
}

void PropertiesWindow::applyFacts(const std::vector<PropertiesFileFacts>& facts, const QString& application) {
    if (windowClosed) return;
    const QHash<QString, QString> rows = PropertiesSelection::factRows(facts);
    for (auto it = rows.cbegin(); it != rows.cend(); ++it)
        set(it.key(), it.value());
    set(QStringLiteral("opens"), PropertiesSelection::opensText(facts, application));
    if (facts.size() != 1 || facts.front().error) return;
    Entry entry;
    entry.location = facts.front().url.toLocalFile();
    entry.kind = facts.front().kind;
    entry.directory = facts.front().isDirectory;
    icon->setPixmap(FileIcons::shared().icon(entry).pixmap(48, 48));
}

void PropertiesWindow::applySize(const PropertiesSizeSummary& summary, bool finished) {
    if (windowClosed) return;
    set(QStringLiteral("size"), summary.sizeText());
    set(QStringLiteral("allocated"), summary.allocatedText());
    set(QStringLiteral("contains"), summary.containsText());
    setStatus(summary.statusText(finished));
    if (finished) progress->stop();
}

void PropertiesWindow::selectTab(int page) {
    tabs->setCurrentIndex(page);
    pages->setCurrentIndex(page);
    tabs->setFocus(Qt::TabFocusReason);
}

bool PropertiesWindow::handleTabShortcut(QKeyEvent* event) {
    const KeyModifiers m = keyModifiers(event->modifiers());
    if (!(m.control || m.command) || m.alt) return false;
    const PhysicalKey key = physicalKey(*event);
    const int count = pages->count();
    if (key == PhysicalKey::Tab)
        selectTab((currentPage() + (m.shift ? count - 1 : 1)) % count);
    else if (key == PhysicalKey::Digit1 && !m.shift)
        selectTab(0);
    else if (key == PhysicalKey::Digit2 && !m.shift)
        selectTab(1);
    else
        return false;
    return true;
}

bool PropertiesWindow::handleKey(QKeyEvent* event) {
    if (handleTabShortcut(event)) return true;
    if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return false;
    const PhysicalKey key = physicalKey(*event);
    if (key == PhysicalKey::Escape) {
        close();
        return true;
    }
    if (key == PhysicalKey::Return || key == PhysicalKey::Enter) {
        closeButton->click();
        return true;
    }
    return false;
}

void PropertiesWindow::fitTitle() {
    // One line: a long name loses its middle to an ellipsis; the tool tip has it whole.
    title->setText(title->fontMetrics().elidedText(selection.headerText(), Qt::ElideMiddle, title->width()));
}

bool PropertiesWindow::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (watched == title && type == QEvent::Resize) fitTitle();
    if (type != QEvent::KeyPress && type != QEvent::ShortcutOverride) return false;
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || widget->window() != this) return false;
    // A key travels up the parents when ignored; only its first stop, the focused widget, counts.
    const QWidget* focus = focusWidget();
    if (widget != (focus ? focus : this)) return false;
    auto* key = static_cast<QKeyEvent*>(event);
    if (type == QEvent::ShortcutOverride) {
        // Claim the keys this window answers, so that no application shortcut takes them first.
        const PhysicalKey k = physicalKey(*key);
        const bool ours = k == PhysicalKey::Tab || k == PhysicalKey::Digit1 || k == PhysicalKey::Digit2 ||
                          k == PhysicalKey::Escape || k == PhysicalKey::Return || k == PhysicalKey::Enter;
        if (ours) key->accept();
        return false;
    }
    return handleKey(key);
}

void PropertiesWindow::closeEvent(QCloseEvent* event) {
    if (!windowClosed) {
        windowClosed = true;
        reading->cancel();
        progress->stop();
        emit closed(this);
    }
    QWidget::closeEvent(event);
}

} // namespace orvane
