#pragma once

#include "core/FileDropPlan.h"

#include <QString>
#include <optional>

class QLabel;

namespace orvane {

// The status line names the plan while a drag hovers and gives back what it said when it leaves.
class DropStatus {
public:
    explicit DropStatus(QLabel* label) : label(label) {}
    void show(const std::optional<FileDropPlan>& plan, const QString& refusal);
    void clear();

private:
    QLabel* label;
    std::optional<QString> before;
};

} // namespace orvane
