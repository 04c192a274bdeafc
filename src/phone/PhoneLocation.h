#pragma once

#include "phone/PhoneItem.h"

#include <QDateTime>
#include <QList>
#include <QUrl>

namespace orvane {

// Addresses of phone folders: android://phone/<names...>?location=<base64 of the JSON chain>. The
// chain of folders from a storage root down travels inside the address, so a pinned or restored
// folder opens again without walking the phone; the readable path serves only display and identity.
namespace PhoneLocation {

QUrl url(const QList<PhoneItem>& history);
// The chain of an address; empty for the phone's top level; absent for anything that is not a
// well-formed phone address.
std::optional<QList<PhoneItem>> decode(const QUrl& url);

} // namespace PhoneLocation

// A phone's date text ("20240314T090512.0+0100") read in local time; fraction and zone are dropped.
std::optional<QDateTime> phoneDate(const std::optional<QString>& text);

} // namespace orvane
