#include "orderservice/gates/IntakePause.h"

#include <atomic>

namespace TC {
namespace {

std::atomic<int> s_pauses{0};

} // namespace

CIntakePause::CIntakePause() {
    ++s_pauses;
}

CIntakePause::~CIntakePause() {
    --s_pauses;
}

bool CIntakePause::isPaused() {
    return s_pauses.load() > 0;
}

} // namespace TC
