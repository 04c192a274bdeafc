#pragma once

#include "properties/PropertiesSelection.h"
#include "properties/PropertiesSizeSummary.h"

#include <QHash>
#include <QWidget>
#include <memory>
#include <vector>

class QGridLayout;
class QKeyEvent;
class QLabel;
class QPushButton;
class QScrollArea;
class QStackedWidget;
class QTabBar;

namespace orvane {

class BusySpinner;
class LiveStatusLabel;
class PropertiesReader;

// A window of its own for the items of one Properties command: placeholders at once, then the
// facts, then the size as the scan goes. It reads and never changes anything.
class PropertiesWindow : public QWidget {
    Q_OBJECT
public:
    explicit PropertiesWindow(const QList<QUrl>& urls, QWidget* parent = nullptr);
    ~PropertiesWindow() override;

    // Starts the facts and the scan on the window's own queue.
    void beginReading();
    PropertiesReader& reader() const { return *reading; }
    const PropertiesSelection& items() const { return selection; }

    // The value shown in a row, by its key ("size", "owner", ...).
    QString value(const QString& key) const;
    QString scanStatus() const;
    bool isSpinning() const;
    int currentPage() const;
    void selectTab(int page);
    // Primary+Tab (with Shift: backwards), Primary+1 and Primary+2 change the page.
    bool handleTabShortcut(QKeyEvent* event);

signals:
    void closed(orvane::PropertiesWindow* window);
    void scanStatusChanged(const QString& text);

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Row;
    void buildInterface();
    QWidget* buildHeader();
    QWidget* buildTabs();
    QWidget* buildPanel();
    QWidget* buildFoot();
    QScrollArea* buildPage(const std::vector<Row>& rows, QWidget* note);
    void addRow(QGridLayout* grid, int line, const Row& row);
    void applyFacts(const std::vector<PropertiesFileFacts>& facts, const QString& application);
    void applySize(const PropertiesSizeSummary& summary, bool finished);
    void set(const QString& key, const QString& text);
    void setStatus(const QString& text);
    void fitTitle();
    bool handleKey(QKeyEvent* event);

    PropertiesSelection selection;
    std::unique_ptr<PropertiesReader> reading;
    QHash<QString, QLabel*> fields;
    QLabel* icon = nullptr;
    QLabel* title = nullptr;
    QTabBar* tabs = nullptr;
    QStackedWidget* pages = nullptr;
    BusySpinner* progress = nullptr;
    LiveStatusLabel* status = nullptr;
    QPushButton* closeButton = nullptr;
    bool windowClosed = false;
};

} // namespace orvane
