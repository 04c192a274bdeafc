#include "kit/DropStatus.h"

#include <QLabel>

namespace orvane {

void DropStatus::show(const std::optional<FileDropPlan>& plan, const QString& refusal) {
    if (!before) before = label->text();
    const QString text = plan ? plan->describe() : refusal;
    label->setText(text.isEmpty() ? *before : text);
}

void DropStatus::clear() {
    if (before) label->setText(*before);
    before.reset();
}

} // namespace orvane
