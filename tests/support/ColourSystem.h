/// What the system's colour management cannot do.
#pragma once

/// Whether it joins more than two profiles; Wine's does not.
bool joinsLongChains();
