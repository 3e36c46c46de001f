#pragma once

#include "tests/ui/support/panel_stage.h"
#include "ui/star.h"

#include <QSize>

namespace tolvenary::test
{

/// One picture of the panel that its look is held against.
struct ReferenceState {
    QString name;
    QSize size;
};

std::vector<ReferenceState> referenceStates();

/// Brings the coordinator into that state. The picker of "picker-open" is opened by who shows the panel.
void enter(const ReferenceState &state, PanelStage &stage);

/// The stars of those pictures: always the same.
std::vector<Star> referenceStars();

} // namespace tolvenary::test
