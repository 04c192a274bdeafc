#pragma once

#include <QLabel>

namespace orvane {

// A line of status that changes while a window is open (a scan's progress). Assistive tools see a
// status bar named by its text, told of each change, so the words are read as they move.
class LiveStatusLabel : public QLabel {
    Q_OBJECT
public:
    explicit LiveStatusLabel(const QString& text, QWidget* parent = nullptr);
    void announce(const QString& text);
};

} // namespace orvane
