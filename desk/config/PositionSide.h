#pragma once

namespace desk {

/// The direction of a position. Short positions were opened by selling. The numbers are saved in the paper
/// broker's store and must not change.
enum class EPositionSide : int { Long = 0, Short = 1 };

} // namespace desk
