#include "orderservice/gates/IntakePause.h"

#include <atomic>

namespace TC {
namespace {

std::atomic<int> s_pauses{0};
std::atomic<bool> s_isConfirming{false};

} // namespace

CIntakePause::CIntakePause() {
    ++s_pauses;
}

CIntakePause::~CIntakePause() {
    --s_pauses;
}

bool CIntakePause::isPaused() {
    return s_pauses.load() > 0 || s_isConfirming.load();
}

void setConfirmationPause(bool isSet) {
    s_isConfirming = isSet;
}

bool isConfirmationPauseSet() {
    return s_isConfirming.load();
}

} // namespace TC
