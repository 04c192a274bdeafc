#pragma once

#include "phone/PhoneItem.h"

#include <QList>
#include <functional>

namespace orvane {

// What a person types into the address box of a phone tab: an android:// address, or a path of
// names such as "Android USB/Internal storage/DCIM" that is walked from the phone's top level.
namespace PhoneAddress {

struct Outcome {
    std::optional<QList<PhoneItem>> chain; // absent when the text led nowhere
    QString error;                         // then the text for the status line
};

// The names to walk; absent when the text is an address that carries its chain.
std::optional<QStringList> names(const QString& text);
// Answers on the main thread; an address with a chain answers at once, without the phone.
void resolve(const QString& text, std::function<void(const Outcome&)> done);

} // namespace PhoneAddress

} // namespace orvane
