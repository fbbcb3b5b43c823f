#pragma once

namespace desk {

/// Which way a position points. Short ones are of derivatives that were opened by selling. Its numbers stand
/// in the paper broker's store.
enum class EPositionSide : int { Long = 0, Short = 1 };

} // namespace desk
