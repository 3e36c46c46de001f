#pragma once

namespace tolvenary
{

/// Lets this process have as many descriptors as its user may give it. Each stream that is heard costs several, and
/// where they run out the connection to the sound server breaks; the customary 1024 are only for programs that still
/// use select(), which this one and its libraries do not. It starts no others that would inherit the limit.
void raiseDescriptorLimit();

} // namespace tolvenary
