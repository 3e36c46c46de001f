#pragma once

namespace tolvenary
{

/// Whether the desktop's settings take the microphone away from every application. A desktop without such a setting
/// does not. Thread: any one.
bool isMicrophoneDisabledInSettings();

} // namespace tolvenary
