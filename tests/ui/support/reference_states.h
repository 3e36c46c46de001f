#pragma once

#include "tests/ui/support/panel_stage.h"
#include "ui/star.h"

#include <QSize>

#include <ostream>
#include <string>

namespace tolvenary::test
{

/// One picture of the panel that its look is held against.
struct ReferenceState {
    QString name;
    QSize size;
};

std::vector<ReferenceState> referenceStates();

/// The state's name as a part of a test's name, and as a failing test shows it.
std::string testName(const ReferenceState &state);
void PrintTo(const ReferenceState &state, std::ostream *out);

/// Brings the coordinator into that state. The picker of "picker-open" is opened by who shows the panel.
void enter(const ReferenceState &state, PanelStage &stage);

/// The stars of those pictures: always the same.
std::vector<Star> referenceStars();

} // namespace tolvenary::test
