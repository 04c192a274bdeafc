#pragma once

#include "core/FileDropPlan.h"

#include <QStringList>
#include <optional>

class QDropEvent;

namespace orvane {

// What a drag of files over one folder tells the plan, read the same way by every drop target: the
// files by their exact bytes, whether they come from this program and lie on the folder's file
// system, the keys held and the actions the source offers.
class DroppedFiles {
public:
    static FileDropPlan::Drag facts(const QDropEvent& event, const QUrl& folder, bool busy);
    static std::optional<FileDropPlan> plan(const QDropEvent& event, const QUrl& folder,
                                            std::optional<int> row, bool busy, QString* refusal = nullptr);
    // Shows the plan's operation on the cursor, or refuses the drag.
    static void answer(QDropEvent& event, const std::optional<FileDropPlan>& plan);
};

} // namespace orvane
