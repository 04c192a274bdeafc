#pragma once

#include "phone/PhoneItem.h"

#include <QList>

class QMimeData;

namespace orvane {

// Phone items on a clipboard or in a drag: the JSON of each item under one type, so any window of
// the program (a local folder to copy into, a phone folder to move into) can read them back.
namespace PhoneClipboard {

QString type();
void write(const QList<PhoneItem>& items, QMimeData& data);
// The items in order; those that don't decode are left out, and so are another process's.
QList<PhoneItem> read(const QMimeData* data);

} // namespace PhoneClipboard

} // namespace orvane
