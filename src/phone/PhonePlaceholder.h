#pragma once

#include "browsing/TabContent.h"

#include <QObject>

namespace orvane {

class Explorer;

// A phone tab until the phone browser lists it: the phone's name and its two transfer buttons.
class PhonePlaceholder : public QObject, public TabContent {
    Q_OBJECT
public:
    explicit PhonePlaceholder(Explorer& window);

    bool handles(const QUrl& url) const override { return url.scheme() == QLatin1String("android"); }
    void reload() override;
    void leave() override;
    QUrl parent(const QUrl& url) const override;

private:
    Explorer& w;
};

} // namespace orvane
