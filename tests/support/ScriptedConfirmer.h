#pragma once

#include "orderservice/gates/OrderConfirmer.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

/// Answers every question of a test in the same way and records the questions. It is the confirmer of the
/// process during its lifetime. Main thread.
class CScriptedConfirmer final : public TC::IOrderConfirmer {
public:
    CScriptedConfirmer() { TC::setOrderConfirmer(this); }
    ~CScriptedConfirmer() override { TC::setOrderConfirmer(nullptr); }
    CScriptedConfirmer(const CScriptedConfirmer&) = delete;
    CScriptedConfirmer& operator=(const CScriptedConfirmer&) = delete;

    TC::CConfirmAnswer confirm(const TC::CConfirmQuestion& question) override {
        questions.push_back(question);
        if (onQuestion) onQuestion();
        return answer;
    }

    void withdraw() override { ++withdrawn; }

    TC::CConfirmAnswer answer{TC::EConfirmResult::Accepted, {}, {}};
    std::function<void()> onQuestion; ///< called while the question is open; may throw
    std::vector<TC::CConfirmQuestion> questions;
    int withdrawn = 0; ///< calls of withdraw
};
