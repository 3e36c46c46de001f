#pragma once

namespace tolvenary
{

/// Raises the limit of this process's descriptors as far as its user may. Each stream that is heard costs several, and
/// when they run out, the connection to the sound server breaks. The customary 1024 exist for programs that use
/// select(), which this one and its libraries do not; and it starts no others that would inherit the limit.
void raiseDescriptorLimit();

} // namespace tolvenary
