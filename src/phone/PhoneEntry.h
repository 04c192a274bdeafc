#pragma once

#include "core/Entry.h"
#include "phone/PhoneItem.h"

namespace orvane {

// A phone item as the shared views show it. Its location, android://phone/<storage>/<id>/<name>,
// is an identity for views, caches and thumbnails only; nothing navigates to it.
Entry phoneEntry(const PhoneItem& item);

} // namespace orvane
