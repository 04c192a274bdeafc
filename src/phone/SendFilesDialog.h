#pragma once

#include <QFileDialog>

namespace orvane {

// Chooses files and folders together to send to a phone. Double-clicking a folder still opens it;
// "Send" takes whatever is selected, folders included.
class SendFilesDialog : public QFileDialog {
    Q_OBJECT
public:
    explicit SendFilesDialog(QWidget* parent);

signals:
    void chosen(const QList<QByteArray>& paths, const QStringList& names);

protected:
    void accept() override;
};

} // namespace orvane
