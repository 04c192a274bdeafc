#include "phone/AndroidContent.h"
#include "core/TabList.h"
#include "kit/CommandBinding.h"
#include "kit/WindowWidgets.h"
#include "phone/PhoneNames.h"

#include "core/BrowserWindow.h"
#include "core/ExplorerEvents.h"
#include "core/WindowCommands.h"
#include "phone/AndroidBrowser.h"
#include "phone/ClipboardFolders.h"
#include "phone/PhoneAddress.h"
#include "phone/PhoneConnectionWatch.h"
#include "phone/PhoneLocation.h"
#include "platform/NativePath.h"
#include "platform/Platform.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPointer>
#include <QToolButton>

namespace orvane {

namespace {
// Commands that act on local paths of the selection: a phone item has none.
const QStringList& localOnly() {
    static const QStringList names = {
        QStringLiteral("newTextDocument"), QStringLiteral("showPackageContents"),
        QStringLiteral("compressAction"),  QStringLiteral("makeAlias"),
        QStringLiteral("revealAction"),    QStringLiteral("quickLook")};
    return names;
}
} // namespace

AndroidContent::AndroidContent(BrowserWindow& window)
    : QObject(window.widget()), w(window), connection(new PhoneConnectionWatch(this)) {
    registerPhoneNames();
    ClipboardFolders::shared(); // clears what an earlier run left
    registerCommands();
    connect(&w.events(), &ExplorerEvents::locationChanged, this, &AndroidContent::prune);
    connect(&w.events(), &ExplorerEvents::selectionChanged, &w.commands(), &WindowCommands::refresh);
    // The phone has no Trash: the button says what it does here.
    connect(&w.commands(), &WindowCommands::statesChanged, this, [this] {
        if (active())
            w.widgets().action("trash")->setToolTip(QStringLiteral("Delete permanently from phone"));
    });
    connection->start();
}

void AndroidContent::registerCommands() {
    WindowCommands& c = w.commands();
    c.add(
        QStringLiteral("sendToAndroid"), QStringLiteral("Send files…"),
        [this] {
            if (AndroidBrowser* b = active()) b->sendFiles();
        },
        [this] { return active() && active()->canSend(); });
    c.add(
        QStringLiteral("saveFromAndroid"), Platform::instance().word(PlatformWord::CopyToComputer) + u'…',
        [this] {
            if (AndroidBrowser* b = active()) b->saveFiles();
        },
        [this] { return active() && active()->canCopyToComputer(); });
    const WindowWidgets& ui = w.widgets();
    ui.action("send")->setText(QStringLiteral("Send files…"));
    ui.action("send")->setAccessibleName(QStringLiteral("Send files to the phone"));
    ui.action("save")->setText(Platform::instance().word(PlatformWord::CopyToComputer) + u'…');
    ui.action("save")->setAccessibleName(Platform::instance().word(PlatformWord::CopyToComputer));
    CommandBinding::bind(c, ui.action("send"), QStringLiteral("sendToAndroid"));
    CommandBinding::bind(c, ui.action("save"), QStringLiteral("saveFromAndroid"));
}

AndroidBrowser* AndroidContent::active() const {
    if (!handles(w.current())) return nullptr;
    return browsers.value(w.tabs().current().id, nullptr);
}

void AndroidContent::reload() {
    const QUuid tab = w.tabs().current().id;
    AndroidBrowser*& browser = browsers[tab];
    if (!browser) {
        browser = new AndroidBrowser(w, tab);
        connect(browser, &AndroidBrowser::idle, this, &AndroidContent::prune);
    }
    const WindowWidgets& ui = w.widgets();
    ui.action("send")->show();
    ui.action("save")->show();
    browser->show(PhoneLocation::decode(w.current()).value_or(QList<PhoneItem>()));
}

void AndroidContent::leave() {
    w.widgets().action("send")->hide();
    w.widgets().action("save")->hide();
}

// A browser goes with its tab, but never in the middle of a transfer that holds the window.
void AndroidContent::prune() {
    for (auto it = browsers.begin(); it != browsers.end();) {
        if (w.tabs().indexOf(it.key()) < 0 && !(*it)->transferring()) {
            (*it)->deleteLater();
            it = browsers.erase(it);
        } else {
            ++it;
        }
    }
}

// Up from a folder is its parent folder, from a storage the phone's top level.
QUrl AndroidContent::parent(const QUrl& url) const {
    const std::optional<QList<PhoneItem>> chain = PhoneLocation::decode(url);
    if (!chain || chain->isEmpty()) return {};
    return PhoneLocation::url(chain->mid(0, chain->size() - 1));
}

// The window's file commands answer by the phone's own rules here.
bool AndroidContent::answers(const QString& name) const {
    if (localOnly().contains(name)) return false;
    const AndroidBrowser* b = active();
    const auto is = [&](const char* command) { return name == QLatin1String(command); };
    if (!b) return !is("pinAction") || w.selected().empty();
    const PhoneControls c = b->controls();
    if (is("copyAction") || is("cutAction")) return c.copyToComputer;
    if (is("pasteAction")) return c.paste;
    if (is("newFolder")) return c.newFolder;
    if (is("renameAction")) return c.rename;
    if (is("trashAction") || is("permanentlyDeleteAction")) return c.remove;
    if (is("propertiesAction")) return !b->selectedItems().isEmpty();
    if (is("selectAll")) return !b->state().busy() && !b->state().items().isEmpty();
    if (is("pinAction")) {
        // The folder shown, or one folder chosen in it, by its own address.
        const QList<PhoneItem> chosen = b->selectedItems();
        return w.selected().empty() || (chosen.size() == 1 && chosen.front().folder && !b->state().busy());
    }
    return true;
}

bool AndroidContent::run(const QString& name) {
    AndroidBrowser* b = active();
    if (!b) return false;
    static const QHash<QString, void (AndroidBrowser::*)()> commands = {
        {QStringLiteral("copyAction"), &AndroidBrowser::copyFiles},
        {QStringLiteral("cutAction"), &AndroidBrowser::cutFiles},
        {QStringLiteral("pasteAction"), &AndroidBrowser::pasteFiles},
        {QStringLiteral("copyPathAction"), &AndroidBrowser::copyPaths},
        {QStringLiteral("selectAll"), &AndroidBrowser::selectAllItems},
        {QStringLiteral("newFolder"), &AndroidBrowser::createFolder},
        {QStringLiteral("renameAction"), &AndroidBrowser::renameSelection},
        {QStringLiteral("trashAction"), &AndroidBrowser::deleteSelection},
        {QStringLiteral("permanentlyDeleteAction"), &AndroidBrowser::deleteSelection},
        {QStringLiteral("propertiesAction"), &AndroidBrowser::showProperties},
    };
    if (name == QLatin1String("pinAction")) {
        if (w.selected().empty()) return false; // the folder shown: the navigation pane pins it
        b->pinSelection();
        return true;
    }
    const auto it = commands.constFind(name);
    if (it == commands.cend()) return false;
    (b->*(*it))();
    return true;
}

bool AndroidContent::contextMenu(QMenu* menu) {
    AndroidBrowser* b = active();
    if (b) b->fillContextMenu(menu);
    return b != nullptr;
}

bool AndroidContent::rename(const Entry& item, const QString& name) {
    AndroidBrowser* b = active();
    if (b) b->renameTo(item, name);
    return b != nullptr;
}

bool AndroidContent::reading() const {
    const AndroidBrowser* b = active();
    return b && b->state().busy();
}

// A phone folder's address carries the chain down to it; its entry's own URL is only an identity.
QUrl AndroidContent::address(const Entry& folder) const {
    const AndroidBrowser* b = active();
    const QList<PhoneItem> items = b ? b->itemsOf({folder}) : QList<PhoneItem>();
    if (items.isEmpty() || !items.front().folder) return {};
    return PhoneLocation::url(b->chainTo(items.front()));
}

bool AndroidContent::open(const std::vector<Entry>& items) {
    if (AndroidBrowser* b = active()) b->open(items);
    return true;
}

// A local path typed on a phone tab still goes to that folder.
bool AndroidContent::goTo(const QString& typed) {
    const QString text = typed.trimmed();
    const QString local = text.startsWith(u'~') ? QDir::homePath() + text.mid(1) : text;
    if (local.startsWith(u'/') && NativePath::isDir(local)) return false;
    if (AndroidBrowser* b = active()) {
        b->state().resolveAddress(text);
        return true;
    }
    // From another tab, only what names the phone itself: an address, or a path from "Android USB".
    const bool named = text.section(u'/', 0, 0, QString::SectionSkipEmpty) == QLatin1String("Android USB");
    if (!text.startsWith(QLatin1String("android:"), Qt::CaseInsensitive) && !named) return false;
    if (named && w.current().isLocalFile() && NativePath::isDir(w.current().toLocalFile() + u'/' + text))
        return false;
    PhoneAddress::resolve(text, [self = QPointer(this)](const PhoneAddress::Outcome& outcome) {
        if (!self) return;
        if (outcome.chain)
            self->w.navigate(PhoneLocation::url(*outcome.chain));
        else
            self->w.widgets().status->setText(outcome.error);
    });
    return true;
}

} // namespace orvane
